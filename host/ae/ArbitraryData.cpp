// The arbitrary-data callback: how the host makes, copies, stores, compares and prints the text of our
// text parameters. The text sits in a host handle with its terminator, but a handle read back from a
// project or a scan may lack it, so nothing here reads past a handle's end.
#include <algorithm>
#include <cstdint>
#include <cstring>

#include "host/ae/Host.h"
#include "host/ae/HostHandle.h"

namespace Tw::Host::AE {
namespace {

// Copies `size` bytes into `handle` if it can be locked.
void fillHandle(const PF_UtilCallbacks& utils, PF_Handle handle, const void* bytes, std::size_t size) {
    const LockedHandle locked(utils, handle);
    if (locked && size > 0) std::memcpy(locked.bytes(), bytes, size);
}

// A new handle holding what `source` holds, or a lone terminator for no source.
PF_Err copyHandle(const PF_UtilCallbacks& utils, PF_Handle source, PF_Handle* destination) {
    if (!source) {
        *destination = utils.host_new_handle(1);
        if (!*destination) return PF_Err_OUT_OF_MEMORY;
        fillHandle(utils, *destination, "", 1);
        return PF_Err_NONE;
    }
    const std::size_t size = static_cast<std::size_t>(utils.host_get_handle_size(source));
    *destination = utils.host_new_handle(size);
    if (!*destination) return PF_Err_OUT_OF_MEMORY;
    const LockedHandle from(utils, source);
    const LockedHandle to(utils, *destination);
    if (!from || !to) return PF_Err_UNRECOGNIZED_PARAM_TYPE;
    std::memcpy(to.bytes(), from.bytes(), size);
    return PF_Err_NONE;
}

// A new handle of `size` bytes copied from `bytes`.
PF_Err newHandleFrom(const PF_UtilCallbacks& utils, const void* bytes, std::size_t size, PF_Handle* handle) {
    *handle = utils.host_new_handle(size);
    if (!*handle) return PF_Err_OUT_OF_MEMORY;
    fillHandle(utils, *handle, bytes, size);
    return PF_Err_NONE;
}

std::size_t handleSize(const PF_UtilCallbacks& utils, PF_Handle handle) {
    return handle ? static_cast<std::size_t>(utils.host_get_handle_size(handle)) : 0;
}

}  // namespace

PF_Err Host::arbitraryCallback() {
    auto& call = *static_cast<PF_ArbParamsExtra*>(extra);
    // Every sub-command's parameters begin with the refcon.
    if ((reinterpret_cast<std::intptr_t>(call.u.new_func_params.refconPV) & -textRefconMark) !=
        textRefconMark)
        return PF_Err_UNRECOGNIZED_PARAM_TYPE;
    const PF_UtilCallbacks& utils = *inData->utils;

    switch (call.which_function) {
        case PF_Arbitrary_NEW_FUNC:
            *call.u.new_func_params.arbPH = utils.host_new_handle(0);
            return *call.u.new_func_params.arbPH ? PF_Err_NONE : PF_Err_OUT_OF_MEMORY;
        case PF_Arbitrary_DISPOSE_FUNC:
            if (call.u.dispose_func_params.arbH) utils.host_dispose_handle(call.u.dispose_func_params.arbH);
            return PF_Err_NONE;
        case PF_Arbitrary_COPY_FUNC:
            return copyHandle(utils, call.u.copy_func_params.src_arbH, call.u.copy_func_params.dst_arbPH);
        case PF_Arbitrary_FLAT_SIZE_FUNC: {
            auto& p = call.u.flat_size_func_params;
            *p.flat_data_sizePLu = static_cast<A_u_long>(handleSize(utils, p.arbH));
            return PF_Err_NONE;
        }
        case PF_Arbitrary_FLATTEN_FUNC: {
            // A buffer of no bytes may come without an address.
            auto& p = call.u.flatten_func_params;
            const LockedHandle locked(utils, p.arbH);
            const std::size_t size = locked ? std::min<std::size_t>(locked.size(), p.buf_sizeLu) : 0;
            if (size > 0) std::memcpy(p.flat_dataPV, locked.bytes(), size);
            return PF_Err_NONE;
        }
        case PF_Arbitrary_UNFLATTEN_FUNC: {
            auto& p = call.u.unflatten_func_params;
            return newHandleFrom(utils, p.flat_dataPV, p.buf_sizeLu, p.arbPH);
        }
        case PF_Arbitrary_INTERP_FUNC: {
            // Text doesn't blend: every frame between two keys holds the left key's text.
            auto& p = call.u.interp_func_params;
            if (!p.left_arbH) return PF_Err_NONE;
            const PF_Err error = copyHandle(utils, p.left_arbH, p.interpPH);
            return error == PF_Err_OUT_OF_MEMORY ? PF_Err_NONE : error;
        }
        case PF_Arbitrary_COMPARE_FUNC: {
            auto& p = call.u.compare_func_params;
            *p.compareP = PF_ArbCompare_EQUAL;
            if (!p.a_arbH || !p.b_arbH) return PF_Err_NONE;
            const LockedHandle a(utils, p.a_arbH);
            const LockedHandle b(utils, p.b_arbH);
            if (!a || !b) return PF_Err_UNRECOGNIZED_PARAM_TYPE;
            const int order = a.text().compare(b.text());
            *p.compareP = order < 0   ? PF_ArbCompare_LESS
                          : order > 0 ? PF_ArbCompare_MORE
                                      : PF_ArbCompare_EQUAL;
            return PF_Err_NONE;
        }
        case PF_Arbitrary_PRINT_SIZE_FUNC: {
            auto& p = call.u.print_size_func_params;
            *p.print_sizePLu = static_cast<A_u_long>(1 + handleSize(utils, p.arbH));
            return PF_Err_NONE;
        }
        case PF_Arbitrary_PRINT_FUNC: {
            // The buffer is zeroed first, so the copy is always terminated; one of no bytes takes nothing.
            auto& p = call.u.print_func_params;
            if (p.print_sizeLu == 0) return PF_Err_NONE;
            std::memset(p.print_bufferPC, 0, p.print_sizeLu);
            const LockedHandle locked(utils, p.arbH);
            const std::size_t size = locked ? std::min<std::size_t>(locked.size(), p.print_sizeLu - 1) : 0;
            if (size > 0) std::memcpy(p.print_bufferPC, locked.bytes(), size);
            return PF_Err_NONE;
        }
        case PF_Arbitrary_SCAN_FUNC: {
            auto& p = call.u.scan_func_params;
            const auto length =
                static_cast<std::size_t>(std::find(p.bufPC, p.bufPC + p.bytes_to_scanLu, '\0') - p.bufPC);
            return newHandleFrom(utils, p.bufPC, length, p.arbPH);
        }
        default:
            return PF_Err_NONE;
    }
}

}  // namespace Tw::Host::AE
