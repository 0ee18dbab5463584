// PF_UtilCallbacks of the simulated host: memory handles (counted, and refused from a chosen call on),
// world copy, fill and allocation, the C library, and iterate_generic over real threads. The sampling,
// compositing and iteration callbacks no effect of the bundle uses are stand-ins that record a fault.
#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <thread>
#include <vector>

#include "tools/aehost/HostCallbacks.h"
#include "tools/aehost/HostState.h"
#include "tools/aehost/UnexpectedCall.h"

namespace Tw::Tools::AeHost {
namespace {

// The handle calls carry no effect_ref: they belong to the host of the calling thread.
HostState* handleHost(const char* call) {
    HostState* host = HostState::current();
    if (!host) std::fprintf(stderr, "%s on a thread with no simulated host\n", call);
    return host;
}

PF_Handle newHandle(A_u_longlong size) {
    HostState* host = handleHost("host_new_handle");
    if (!host || host->refuseAllocation()) return nullptr;
    return host->handles.allocate(static_cast<std::size_t>(size));
}

void* lockHandle(PF_Handle handle) {
    HostState* host = handleHost("host_lock_handle");
    return host ? host->handles.lock(handle) : nullptr;
}

void unlockHandle(PF_Handle handle) {
    if (HostState* host = handleHost("host_unlock_handle")) host->handles.unlock(handle);
}

void disposeHandle(PF_Handle handle) {
    if (HostState* host = handleHost("host_dispose_handle")) host->handles.dispose(handle);
}

A_u_longlong handleSize(PF_Handle handle) {
    HostState* host = handleHost("host_get_handle_size");
    return host ? host->handles.size(handle) : 0;
}

PF_Err resizeHandle(A_u_longlong size, PF_Handle* handle) {
    HostState* host = handleHost("host_resize_handle");
    if (!host || !handle) return PF_Err_BAD_CALLBACK_PARAM;
    return host->handles.resize(static_cast<std::size_t>(size), *handle);
}

// Bytes of one pixel of a world the host knows; 0 for any other.
int pixelBytesOf(HostState& host, const PF_EffectWorld* world) {
    int depth = 0;
    ComponentOrder order{};
    const auto format = host.formatOf(world);
    return format && describeFormat(*format, depth, order) ? depth / 8 * 4 : 0;
}

std::byte* pixelAt(const PF_EffectWorld& world, A_long x, A_long y, int pixelBytes) {
    return reinterpret_cast<std::byte*>(world.data) + static_cast<std::ptrdiff_t>(y) * world.rowbytes +
           static_cast<std::ptrdiff_t>(x) * pixelBytes;
}

// A rectangle of a world, the whole world when null, cut to the world.
PF_Rect clipTo(const PF_EffectWorld& world, const PF_Rect* rect) {
    PF_Rect whole{0, 0, world.width, world.height};
    if (!rect) return whole;
    return {std::max(rect->left, 0), std::max(rect->top, 0), std::min(rect->right, world.width),
            std::min(rect->bottom, world.height)};
}

PF_Err copyWorld(PF_ProgPtr effectRef, PF_EffectWorld* source, PF_EffectWorld* destination,
                 PF_Rect* sourceRect, PF_Rect* destinationRect) {
    CommandState* command = commandOf(effectRef);
    if (!command || !source || !destination) return PF_Err_BAD_CALLBACK_PARAM;
    HostState& host = command->host;
    const int pixelBytes = pixelBytesOf(host, source);
    if (pixelBytes == 0 || pixelBytes != pixelBytesOf(host, destination) ||
        host.formatOf(source) != host.formatOf(destination)) {
        host.audit.fault("copy between worlds of different or unknown formats");
        return PF_Err_BAD_CALLBACK_PARAM;
    }
    const PF_Rect from = clipTo(*source, sourceRect);
    const PF_Rect to = clipTo(*destination, destinationRect);
    const A_long width = std::min(from.right - from.left, to.right - to.left);
    const A_long height = std::min(from.bottom - from.top, to.bottom - to.top);
    for (A_long y = 0; y < height; ++y) {
        std::memmove(pixelAt(*destination, to.left, to.top + y, pixelBytes),
                     pixelAt(*source, from.left, from.top + y, pixelBytes),
                     static_cast<std::size_t>(std::max(width, 0)) * pixelBytes);
    }
    return PF_Err_NONE;
}

// Fills with one pixel given in the world's own units and order.
template <class Component>
void fillWith(const PF_EffectWorld& world, const PF_Rect& rect, const Component (&argb)[4],
              ComponentOrder order) {
    Component pixel[4];
    if (order == ComponentOrder::Argb) {
        std::copy_n(argb, 4, pixel);
    } else {
        pixel[0] = argb[3];
        pixel[1] = argb[2];
        pixel[2] = argb[1];
        pixel[3] = argb[0];
    }
    for (A_long y = rect.top; y < rect.bottom; ++y)
        for (A_long x = rect.left; x < rect.right; ++x)
            std::memcpy(pixelAt(world, x, y, sizeof(pixel)), pixel, sizeof(pixel));
}

// A colour in 8 or 16-bit units, into a world of any depth; null is transparent black.
PF_Err fillWorld(PF_ProgPtr effectRef, const A_u_short* argb, double white, const PF_Rect* rect,
                 PF_EffectWorld* world) {
    CommandState* command = commandOf(effectRef);
    if (!command || !world) return PF_Err_BAD_CALLBACK_PARAM;
    int depth = 0;
    ComponentOrder order{};
    const auto format = command->host.formatOf(world);
    if (!format || !describeFormat(*format, depth, order)) {
        command->host.audit.fault("fill of a world the host doesn't know");
        return PF_Err_BAD_CALLBACK_PARAM;
    }
    const PF_Rect area = clipTo(*world, rect);
    const auto unit = [&](int c) { return argb ? argb[c] / white : 0.0; };
    if (depth == 8) {
        const A_u_char pixel[4] = {
            static_cast<A_u_char>(unit(0) * 255 + 0.5), static_cast<A_u_char>(unit(1) * 255 + 0.5),
            static_cast<A_u_char>(unit(2) * 255 + 0.5), static_cast<A_u_char>(unit(3) * 255 + 0.5)};
        fillWith(*world, area, pixel, order);
    } else if (depth == 16) {
        const A_u_short pixel[4] = {
            static_cast<A_u_short>(unit(0) * 32768 + 0.5), static_cast<A_u_short>(unit(1) * 32768 + 0.5),
            static_cast<A_u_short>(unit(2) * 32768 + 0.5), static_cast<A_u_short>(unit(3) * 32768 + 0.5)};
        fillWith(*world, area, pixel, order);
    } else {
        const float pixel[4] = {static_cast<float>(unit(0)), static_cast<float>(unit(1)),
                                static_cast<float>(unit(2)), static_cast<float>(unit(3))};
        fillWith(*world, area, pixel, order);
    }
    return PF_Err_NONE;
}

PF_Err newWorld(PF_ProgPtr effectRef, A_long width, A_long height, PF_NewWorldFlags flags,
                PF_EffectWorld* world) {
    CommandState* command = commandOf(effectRef);
    if (!command || !world || width < 0 || height < 0) return PF_Err_BAD_CALLBACK_PARAM;
    HostState& host = command->host;
    const bool deep = (flags & PF_NewWorldFlag_DEEP_PIXELS) != 0;
    const bool premiere = host.settings.application == Application::PremierePro;
    const PF_PixelFormat format =
        premiere ? (deep ? static_cast<PF_PixelFormat>(PrPixelFormat_BGRA_4444_16u) : PF_PixelFormat_BGRA32)
                 : (deep ? PF_PixelFormat_ARGB64 : PF_PixelFormat_ARGB32);
    if (host.refuseAllocation()) return PF_Err_OUT_OF_MEMORY;
    LentWorld made = host.makeWorld(width, height, format, 0, 0, (flags & PF_NewWorldFlag_CLEAR_PIXELS) != 0,
                                    "a world the effect made");
    *world = made->world();
    const std::lock_guard lock(host.mutex);
    host.effectWorlds.emplace(world->data, std::move(made));
    return PF_Err_NONE;
}

PF_Err disposeWorld(PF_ProgPtr effectRef, PF_EffectWorld* world) {
    CommandState* command = commandOf(effectRef);
    if (!command || !world) return PF_Err_BAD_CALLBACK_PARAM;
    HostState& host = command->host;
    LentWorld disposed;
    {
        const std::lock_guard lock(host.mutex);
        const auto found = host.effectWorlds.find(world->data);
        if (found != host.effectWorlds.end()) {
            disposed = std::move(found->second);
            host.effectWorlds.erase(found);
        }
    }
    if (!disposed) {
        host.audit.fault("dispose_world of a world the effect didn't make");
        return PF_Err_BAD_CALLBACK_PARAM;
    }
    *world = PF_EffectWorld{};
    return PF_Err_NONE;
}

// `iterations` calls of `function`, spread over the host's workers: the calling thread is worker 0. For
// PF_Iterations_ONCE_PER_PROCESSOR each worker makes exactly one call, with its own index as the iteration;
// otherwise the workers take iterations in turn. Once a call answers an error, no further iteration starts,
// and that error is the result.
PF_Err iterateGeneric(A_long iterations, void* refcon, PF_Err (*function)(void*, A_long, A_long, A_long)) {
    HostState* host = HostState::current();
    if (!host || !function) return PF_Err_BAD_CALLBACK_PARAM;
    ++host->iterateCalls;
    const A_long workers = std::max(host->settings.workerCount, 1);
    const bool oncePerWorker = iterations == PF_Iterations_ONCE_PER_PROCESSOR;
    const A_long count = oncePerWorker ? workers : iterations;
    if (count <= 0) return PF_Err_NONE;

    std::atomic<A_long> next{0};
    std::atomic<PF_Err> failure{PF_Err_NONE};
    const auto work = [&](A_long threadIndex) {
        const CurrentHostScope scope(host);
        while (failure.load() == PF_Err_NONE) {
            const A_long i = oncePerWorker ? threadIndex : next.fetch_add(1);
            if (i >= count) return;
            if (const PF_Err error = function(refcon, threadIndex, i, count)) {
                PF_Err none = PF_Err_NONE;
                failure.compare_exchange_strong(none, error);
            }
            if (oncePerWorker) return;
        }
    };
    std::vector<std::thread> threads;
    for (A_long t = 1; t < std::min(workers, count); ++t)
        threads.emplace_back(work, t);
    work(0);
    for (std::thread& thread : threads)
        thread.join();
    return failure.load();
}

PF_ANSICallbacks ansiCallbacks() {
    PF_ANSICallbacks ansi{};
    ansi.atan = [](A_FpLong x) { return std::atan(x); };
    ansi.atan2 = [](A_FpLong y, A_FpLong x) { return std::atan2(y, x); };
    ansi.ceil = [](A_FpLong x) { return std::ceil(x); };
    ansi.cos = [](A_FpLong x) { return std::cos(x); };
    ansi.exp = [](A_FpLong x) { return std::exp(x); };
    ansi.fabs = [](A_FpLong x) { return std::fabs(x); };
    ansi.floor = [](A_FpLong x) { return std::floor(x); };
    ansi.fmod = [](A_FpLong x, A_FpLong y) { return std::fmod(x, y); };
    ansi.hypot = [](A_FpLong x, A_FpLong y) { return std::hypot(x, y); };
    ansi.log = [](A_FpLong x) { return std::log(x); };
    ansi.log10 = [](A_FpLong x) { return std::log10(x); };
    ansi.pow = [](A_FpLong x, A_FpLong y) { return std::pow(x, y); };
    ansi.sin = [](A_FpLong x) { return std::sin(x); };
    ansi.sqrt = [](A_FpLong x) { return std::sqrt(x); };
    ansi.tan = [](A_FpLong x) { return std::tan(x); };
    ansi.sprintf = &std::sprintf;
    ansi.strcpy = [](A_char* destination, const A_char* source) { return std::strcpy(destination, source); };
    ansi.asin = [](A_FpLong x) { return std::asin(x); };
    ansi.acos = [](A_FpLong x) { return std::acos(x); };
    return ansi;
}

}  // namespace

PF_UtilCallbacks utilityCallbacks(bool withIterateGeneric) {
    PF_UtilCallbacks utils{};
    utils.begin_sampling = unexpected<decltype(utils.begin_sampling)>();
    utils.subpixel_sample = unexpected<decltype(utils.subpixel_sample)>();
    utils.area_sample = unexpected<decltype(utils.area_sample)>();
    utils.end_sampling = unexpected<decltype(utils.end_sampling)>();
    utils.composite_rect = unexpected<decltype(utils.composite_rect)>();
    utils.blend = unexpected<decltype(utils.blend)>();
    utils.convolve = unexpected<decltype(utils.convolve)>();
    utils.copy = &copyWorld;
    utils.fill = [](PF_ProgPtr effectRef, const PF_Pixel* color, const PF_Rect* rect, PF_EffectWorld* world) {
        const PF_Pixel none{};
        const PF_Pixel& c = color ? *color : none;
        const A_u_short argb[4] = {c.alpha, c.red, c.green, c.blue};
        return fillWorld(effectRef, color ? argb : nullptr, 255.0, rect, world);
    };
    utils.gaussian_kernel = unexpected<decltype(utils.gaussian_kernel)>();
    utils.iterate = unexpected<decltype(utils.iterate)>();
    utils.premultiply = unexpected<decltype(utils.premultiply)>();
    utils.premultiply_color = unexpected<decltype(utils.premultiply_color)>();
    utils.new_world = &newWorld;
    utils.dispose_world = &disposeWorld;
    utils.iterate_origin = unexpected<decltype(utils.iterate_origin)>();
    utils.iterate_lut = unexpected<decltype(utils.iterate_lut)>();
    utils.transfer_rect = unexpected<decltype(utils.transfer_rect)>();
    utils.transform_world = unexpected<decltype(utils.transform_world)>();
    utils.host_new_handle = &newHandle;
    utils.host_lock_handle = &lockHandle;
    utils.host_unlock_handle = &unlockHandle;
    utils.host_dispose_handle = &disposeHandle;
    utils.get_callback_addr = unexpected<decltype(utils.get_callback_addr)>();
    utils.app = unexpected<decltype(utils.app)>();
    utils.ansi = ansiCallbacks();
    utils.colorCB.RGBtoHLS = unexpected<decltype(utils.colorCB.RGBtoHLS)>();
    utils.colorCB.HLStoRGB = unexpected<decltype(utils.colorCB.HLStoRGB)>();
    utils.colorCB.RGBtoYIQ = unexpected<decltype(utils.colorCB.RGBtoYIQ)>();
    utils.colorCB.YIQtoRGB = unexpected<decltype(utils.colorCB.YIQtoRGB)>();
    utils.colorCB.Luminance = unexpected<decltype(utils.colorCB.Luminance)>();
    utils.colorCB.Hue = unexpected<decltype(utils.colorCB.Hue)>();
    utils.colorCB.Lightness = unexpected<decltype(utils.colorCB.Lightness)>();
    utils.colorCB.Saturation = unexpected<decltype(utils.colorCB.Saturation)>();
    utils.get_platform_data = unexpected<decltype(utils.get_platform_data)>();
    utils.host_get_handle_size = &handleSize;
    utils.iterate_origin_non_clip_src = unexpected<decltype(utils.iterate_origin_non_clip_src)>();
    utils.iterate_generic = withIterateGeneric ? &iterateGeneric : nullptr;
    utils.host_resize_handle = &resizeHandle;
    utils.subpixel_sample16 = unexpected<decltype(utils.subpixel_sample16)>();
    utils.area_sample16 = unexpected<decltype(utils.area_sample16)>();
    utils.fill16 = [](PF_ProgPtr effectRef, const PF_Pixel16* color, const PF_Rect* rect,
                      PF_EffectWorld* world) {
        const PF_Pixel16 none{};
        const PF_Pixel16& c = color ? *color : none;
        const A_u_short argb[4] = {c.alpha, c.red, c.green, c.blue};
        return fillWorld(effectRef, color ? argb : nullptr, 32768.0, rect, world);
    };
    utils.premultiply_color16 = unexpected<decltype(utils.premultiply_color16)>();
    utils.iterate16 = unexpected<decltype(utils.iterate16)>();
    utils.iterate_origin16 = unexpected<decltype(utils.iterate_origin16)>();
    utils.iterate_origin_non_clip_src16 = unexpected<decltype(utils.iterate_origin_non_clip_src16)>();
    utils.get_pixel_data8 = unexpected<decltype(utils.get_pixel_data8)>();
    utils.get_pixel_data16 = unexpected<decltype(utils.get_pixel_data16)>();
    return utils;
}

}  // namespace Tw::Tools::AeHost
