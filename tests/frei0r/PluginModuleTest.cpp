// The built plug-in modules, loaded with dlopen and called through their C entry points as a host
// calls them.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "host/frei0r/PluginFileName.h"
#include "host/frei0r/PluginInstance.h"

namespace Tw::Host::Frei0r {
namespace TW_FILE_LOCAL {

// One module, open for the life of the object, with the entry points a host looks up.
class LoadedModule {
    // First, so that they are set before the entry points are looked up.
    std::string path_;
    void* handle_;

public:
    LoadedModule(const EffectEntry& entry, int mode = RTLD_NOW | RTLD_LOCAL)
        : path_(std::string(TW_FREI0R_PLUGIN_DIR) + "/" + pluginFileName(entry.entryName, entry.displayName) +
                ".so"),
          handle_(dlopen(path_.c_str(), mode)) {}
    ~LoadedModule() {
        if (handle_) dlclose(handle_);
    }
    LoadedModule(const LoadedModule&) = delete;
    LoadedModule& operator=(const LoadedModule&) = delete;

    bool loaded() const { return handle_ != nullptr; }
    void* symbol(const char* name) const { return dlsym(handle_, name); }
    template <class Function>
    Function* function(const char* name) const {
        return reinterpret_cast<Function*>(symbol(name));
    }

    decltype(&f0r_init) init = function<decltype(f0r_init)>("f0r_init");
    decltype(&f0r_get_plugin_info) pluginInfo =
        function<decltype(f0r_get_plugin_info)>("f0r_get_plugin_info");
    decltype(&f0r_get_param_info) paramInfo = function<decltype(f0r_get_param_info)>("f0r_get_param_info");
    decltype(&f0r_construct) construct = function<decltype(f0r_construct)>("f0r_construct");
    decltype(&f0r_destruct) destruct = function<decltype(f0r_destruct)>("f0r_destruct");
    decltype(&f0r_set_param_value) setParam = function<decltype(f0r_set_param_value)>("f0r_set_param_value");
    decltype(&f0r_get_param_value) getParam = function<decltype(f0r_get_param_value)>("f0r_get_param_value");
    decltype(&f0r_update) update = function<decltype(f0r_update)>("f0r_update");
    decltype(&f0r_update2) update2 = function<decltype(f0r_update2)>("f0r_update2");

    // Parameter `index` of `instance` as the module reads it back after a host set it to `value`.
    template <class Value>
    Value setAndRead(f0r_instance_t instance, Value value, int index) const {
        Value read{};
        setParam(instance, &value, index);
        getParam(instance, &read, index);
        return read;
    }
};

TEST(PluginModule, EveryEffectHasAModuleThatDescribesIt) {
    for (const EffectEntry& entry : Plugins::effectRegistry<StandaloneHost>()) {
        SCOPED_TRACE(entry.entryName);
        const LoadedModule module(entry);
        ASSERT_TRUE(module.loaded()) << dlerror();
        for (const char* name :
             {"f0r_init", "f0r_deinit", "f0r_get_plugin_info", "f0r_get_param_info", "f0r_construct",
              "f0r_destruct", "f0r_set_param_value", "f0r_get_param_value", "f0r_update", "f0r_update2"}) {
            EXPECT_NE(module.symbol(name), nullptr) << name;
        }

        // Hosts read the description before f0r_init, or without it.
        const PluginDescription expected(entry);
        f0r_plugin_info_t info{};
        module.pluginInfo(&info);
        f0r_plugin_info_t expectedInfo{};
        expected.fillInfo(expectedInfo);
        EXPECT_STREQ(info.name, expectedInfo.name);
        EXPECT_EQ(info.plugin_type, expectedInfo.plugin_type);
        EXPECT_EQ(info.color_model, F0R_COLOR_MODEL_BGRA8888);
        EXPECT_EQ(info.frei0r_version, FREI0R_MAJOR_VERSION);
        ASSERT_EQ(info.num_params, static_cast<int>(expected.parameters().size()));
        for (int i = 0; i < info.num_params; ++i) {
            f0r_param_info_t param{};
            module.paramInfo(&param, i);
            EXPECT_EQ(param.name, expected.parameters()[i].name);
            EXPECT_EQ(param.type, expected.parameters()[i].kind);
        }
        EXPECT_EQ(module.init(), 1);
    }
}

TEST(PluginModule, ReadsBackEveryParameterAsItWasSet) {
    for (const EffectEntry& entry : Plugins::effectRegistry<StandaloneHost>()) {
        SCOPED_TRACE(entry.entryName);
        const LoadedModule module(entry);
        ASSERT_TRUE(module.loaded()) << dlerror();
        f0r_plugin_info_t info{};
        module.pluginInfo(&info);
        f0r_instance_t instance = module.construct(16, 8);
        ASSERT_NE(instance, nullptr);
        for (int i = 0; i < info.num_params; ++i) {
            f0r_param_info_t param{};
            module.paramInfo(&param, i);
            SCOPED_TRACE(param.name);
            if (param.type == F0R_PARAM_BOOL || param.type == F0R_PARAM_DOUBLE) {
                for (double set : {1.0, 0.3, 0.0})
                    EXPECT_EQ(module.setAndRead(instance, set, i), set);
            } else if (param.type == F0R_PARAM_COLOR) {
                const auto read = module.setAndRead(instance, f0r_param_color_t{0.25f, 0.5f, 0.1f}, i);
                EXPECT_TRUE(read.r == 0.25f && read.g == 0.5f && read.b == 0.1f);
            } else if (param.type == F0R_PARAM_POSITION) {
                const auto read = module.setAndRead(instance, f0r_param_position_t{0.25, 0.875}, i);
                EXPECT_TRUE(read.x == 0.25 && read.y == 0.875);
            } else {
                char text[] = "set by the host";
                EXPECT_STREQ(module.setAndRead<f0r_param_string>(instance, text, i), text);
            }
        }
        // Calls a host should not make still leave the module standing.
        double value = 0.5;
        module.setParam(nullptr, &value, 0);
        module.setParam(instance, nullptr, 0);
        module.setParam(instance, &value, info.num_params);
        module.getParam(instance, &value, -1);
        module.update(nullptr, 0, nullptr, nullptr);
        module.destruct(instance);
    }
}

TEST(PluginModule, ModulesLoadedSideBySideEachRenderTheirOwnEffect) {
    // Loaded into the global scope, where a symbol one module showed would serve the other's calls.
    const EffectEntry& max = effectNamed("MaxEntry");
    const EffectEntry& min = effectNamed("MinEntry");
    const LoadedModule maxModule(max, RTLD_NOW | RTLD_GLOBAL);
    const LoadedModule minModule(min, RTLD_NOW | RTLD_GLOBAL);
    ASSERT_TRUE(maxModule.loaded() && minModule.loaded()) << dlerror();

    constexpr unsigned kWidth = 24, kHeight = 10;
    std::vector<uint32_t> in(kWidth * kHeight);
    for (std::size_t i = 0; i < in.size(); ++i)
        in[i] = static_cast<uint32_t>(i * 2654435761u);
    for (const auto* each : {&maxModule, &minModule}) {
        const EffectEntry& entry = each == &maxModule ? max : min;
        SCOPED_TRACE(entry.entryName);
        const PluginDescription plugin(entry);
        PluginInstance reference(plugin, kWidth, kHeight);
        std::vector<uint32_t> expected(in.size()), out(in.size());
        reference.update(in.data(), {}, expected.data());

        f0r_instance_t instance = each->construct(kWidth, kHeight);
        each->update(instance, 0.0, in.data(), out.data());
        EXPECT_EQ(out, expected);
        each->update2(instance, 0.0, in.data(), nullptr, nullptr, out.data());
        EXPECT_EQ(out, expected);
        each->destruct(instance);
    }
}

}  // namespace TW_FILE_LOCAL
}  // namespace Tw::Host::Frei0r
