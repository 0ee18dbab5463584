// A bundle with one effect that breaks the host's protocol while rendering right: at PF_Cmd_RENDER it
// copies its 8-bit input to its output but keeps a suite it acquired and a memory handle it took. aehost
// must render it, list the faults and say so in its exit code.
#include <cstring>

#include "host/ae/sdk/AeSdk.h"

extern "C" __attribute__((visibility("default"))) PF_Err LeakyEntry(PF_Cmd command, PF_InData* in,
                                                                    PF_OutData*, PF_ParamDef** params,
                                                                    PF_LayerDef* output, void*) {
    if (command != PF_Cmd_RENDER) return PF_Err_NONE;
    const PF_LayerDef& input = params[0]->u.ld;
    for (A_long y = 0; y < output->height; ++y) {
        std::memcpy(reinterpret_cast<char*>(output->data) + y * output->rowbytes,
                    reinterpret_cast<const char*>(input.data) + y * input.rowbytes,
                    static_cast<std::size_t>(output->width) * 4);
    }
    in->utils->host_new_handle(64);
    const void* kept = nullptr;
    return in->pica_basicP->AcquireSuite(kPFWorldSuite, kPFWorldSuiteVersion2, &kept);
}
