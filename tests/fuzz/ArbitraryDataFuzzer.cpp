// The After Effects adapter's arbitrary data, on any flattened bytes: unflattened into a handle as a host
// loading a project would, then flattened into buffers of its flat size and of a smaller size the first
// byte picks, printed, scanned back from the print, copied and compared. The handles are blocks of exactly
// their size, so that the address sanitizer sees any access beyond one.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "host/ae/Host.h"
#include "host/ae/HostHandle.h"

namespace {

namespace AE = Tw::Host::AE;

// A handle points at the first member, which points at the block.
struct Block {
    void* bytes;
    std::size_t size;
};

PF_Handle newHandle(A_u_longlong size) {
    auto* block = new Block{std::malloc(size), size};
    return &block->bytes;
}
Block& blockOf(PF_Handle handle) {
    return *reinterpret_cast<Block*>(handle);
}
void* lockHandle(PF_Handle handle) {
    return blockOf(handle).bytes;
}
void unlockHandle(PF_Handle) {}
void disposeHandle(PF_Handle handle) {
    std::free(blockOf(handle).bytes);
    delete &blockOf(handle);
}
A_u_longlong handleSize(PF_Handle handle) {
    return blockOf(handle).size;
}
PF_Err resizeHandle(A_u_longlong size, PF_Handle* handle) {
    Block& block = blockOf(*handle);
    block.bytes = std::realloc(block.bytes, size);
    block.size = size;
    return PF_Err_NONE;
}

// An effect with nothing but the adapter's callback.
class TextEffect final : public AE::Host {
public:
    void defineParameters(Tw::Host::Param::Parameters&) override {}
    void renderFrame(Tw::Host::Param::Parameters&, AE::ImageBuffer&, AE::ImageBuffer&, AE::ImageBuffer&,
                     Tw::Image::LayerImages) override {}
    const char* effectName() const override { return "Text"; }
};

class Callback {
public:
    Callback() {
        utils_.host_new_handle = &newHandle;
        utils_.host_lock_handle = &lockHandle;
        utils_.host_unlock_handle = &unlockHandle;
        utils_.host_dispose_handle = &disposeHandle;
        utils_.host_get_handle_size = &handleSize;
        utils_.host_resize_handle = &resizeHandle;
        inData_.utils = &utils_;
        effect_.inData = &inData_;
        effect_.extra = &extra_;
    }

    // Sends one sub-command whose parameters `fill` sets, the refcon of text parameter 7 among them.
    template <class Fill>
    PF_Err send(PF_FunctionSelector function, Fill fill) {
        extra_ = {};
        extra_.which_function = function;
        fill(extra_.u);
        return effect_.arbitraryCallback();
    }

    static void* refcon() { return reinterpret_cast<void*>(AE::textRefconMark + 7); }

private:
    PF_UtilCallbacks utils_{};
    PF_InData inData_{};
    PF_ArbParamsExtra extra_{};
    TextEffect effect_;
};

PF_Handle unflattened(Callback& callback, const std::uint8_t* data, std::size_t size) {
    PF_Handle handle = nullptr;
    callback.send(PF_Arbitrary_UNFLATTEN_FUNC, [&](auto& u) {
        u.unflatten_func_params = {Callback::refcon(), static_cast<A_u_long>(size), data, &handle};
    });
    return handle;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Callback callback;
    void* const refcon = Callback::refcon();
    const PF_Handle text = unflattened(callback, data, size);
    const PF_Handle half = unflattened(callback, data, size / 2);
    if (!text || !half) return 0;

    A_u_long flatSize = 0;
    callback.send(PF_Arbitrary_FLAT_SIZE_FUNC, [&](auto& u) {
        u.flat_size_func_params = {refcon, text, &flatSize};
    });
    for (const A_u_long bufferSize : {flatSize, size ? data[0] % (flatSize + 1) : 0}) {
        std::vector<std::uint8_t> flat(bufferSize);
        callback.send(PF_Arbitrary_FLATTEN_FUNC, [&](auto& u) {
            u.flatten_func_params = {refcon, text, bufferSize, flat.data()};
        });
    }

    A_u_long printSize = 0;
    callback.send(PF_Arbitrary_PRINT_SIZE_FUNC, [&](auto& u) {
        u.print_size_func_params = {refcon, text, &printSize};
    });
    std::vector<char> printed(printSize);
    callback.send(PF_Arbitrary_PRINT_FUNC, [&](auto& u) {
        u.print_func_params = {refcon, PF_ArbPrint_NONE, text, printSize, printed.data()};
    });
    PF_Handle scanned = nullptr;
    callback.send(PF_Arbitrary_SCAN_FUNC, [&](auto& u) {
        u.scan_func_params = {refcon, printed.data(), printSize, &scanned};
    });

    PF_Handle copied = nullptr;
    callback.send(PF_Arbitrary_COPY_FUNC, [&](auto& u) { u.copy_func_params = {refcon, text, &copied}; });
    PF_ArbCompareResult order = PF_ArbCompare_EQUAL;
    callback.send(PF_Arbitrary_COMPARE_FUNC, [&](auto& u) {
        u.compare_func_params = {refcon, text, half, &order};
    });
    PF_Handle between = nullptr;
    callback.send(PF_Arbitrary_INTERP_FUNC, [&](auto& u) {
        u.interp_func_params = {refcon, text, half, 0.5, &between};
    });

    for (const PF_Handle handle : {text, half, scanned, copied, between}) {
        if (handle)
            callback.send(PF_Arbitrary_DISPOSE_FUNC, [&](auto& u) {
                u.dispose_func_params = {refcon, handle};
            });
    }
    return 0;
}
