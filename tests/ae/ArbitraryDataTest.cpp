// PF_Cmd_ARBITRARY_CALLBACK: what the host asks of text parameters' handles (make, copy, flatten, compare,
// print, scan, dispose). No effect has a text parameter yet, but every entry answers the callback with the
// same code, so the host calls it on one.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "tests/ae/BuiltBundle.h"
#include "tools/aehost/SimulatedHost.h"

namespace Tw::Tools::AeHost {
namespace TW_FILE_LOCAL {

using ::testing::IsEmpty;

// The tag every text parameter's refcon carries, with identifier 5.
void* const kOurs = reinterpret_cast<void*>(std::intptr_t{4096 + 5});

class ArbitraryData : public ::testing::Test {
protected:
    PF_Handle textHandle(const std::string& text, bool terminated = true) {
        const std::size_t size = text.size() + (terminated ? 1 : 0);
        const PF_Handle handle = host.handles().allocate(size);
        std::memcpy(host.handles().lock(handle), text.c_str(), size);
        host.handles().unlock(handle);
        return handle;
    }
    std::string bytesOf(PF_Handle handle) {
        const std::size_t size = host.handles().size(handle);
        std::string bytes(static_cast<const char*>(host.handles().lock(handle)), size);
        host.handles().unlock(handle);
        return bytes;
    }
    PF_Err call(PF_FunctionSelector function, PF_ArbParamsExtra& extra) {
        extra.which_function = function;
        return host.arbitraryCallback(extra);
    }
    void TearDown() override { EXPECT_THAT(host.faults(), IsEmpty()); }

    SimulatedHost host{bundleEntry("BlurEntry")};
};

// A refcon without our tag belongs to some other parameter: every sub-command answers that it doesn't know
// the type, and goes no further (it would write through the null pointers it is given here).
TEST_F(ArbitraryData, OnlyOurTagPassesOnEverySubCommand) {
    for (const std::intptr_t refcon : {std::intptr_t{8192 + 5}, std::intptr_t{5}}) {
        for (PF_FunctionSelector function = PF_Arbitrary_NEW_FUNC; function <= PF_Arbitrary_SCAN_FUNC;
             ++function) {
            PF_ArbParamsExtra extra{};
            extra.u.new_func_params.refconPV = reinterpret_cast<void*>(refcon);
            EXPECT_EQ(call(function, extra), PF_Err_UNRECOGNIZED_PARAM_TYPE) << function << ", " << refcon;
        }
    }
    EXPECT_EQ(host.handles().liveCount(), 0u);
}

TEST_F(ArbitraryData, NewCopyAndDisposeManageHandles) {
    PF_ArbParamsExtra extra{};
    PF_Handle made = nullptr;
    extra.u.new_func_params = {kOurs, &made};
    ASSERT_EQ(call(PF_Arbitrary_NEW_FUNC, extra), PF_Err_NONE);
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(host.handles().size(made), 0u);

    // A null handle copies to one zero byte; a text to all of its bytes.
    PF_Handle copy = nullptr;
    extra.u.copy_func_params = {kOurs, nullptr, &copy};
    ASSERT_EQ(call(PF_Arbitrary_COPY_FUNC, extra), PF_Err_NONE);
    EXPECT_EQ(bytesOf(copy), std::string(1, '\0'));
    const PF_Handle text = textHandle("Skin");
    PF_Handle textCopy = nullptr;
    extra.u.copy_func_params = {kOurs, text, &textCopy};
    ASSERT_EQ(call(PF_Arbitrary_COPY_FUNC, extra), PF_Err_NONE);
    EXPECT_NE(textCopy, text);
    EXPECT_EQ(bytesOf(textCopy), std::string("Skin", 5));

    // Interpolating text takes the left one as it is.
    PF_Handle between = nullptr;
    const PF_Handle right = textHandle("Sky");
    extra.u.interp_func_params = {kOurs, text, right, 0.75, &between};
    ASSERT_EQ(call(PF_Arbitrary_INTERP_FUNC, extra), PF_Err_NONE);
    EXPECT_EQ(bytesOf(between), std::string("Skin", 5));

    EXPECT_EQ(host.handles().liveCount(), 6u);
    for (const PF_Handle handle : {made, copy, textCopy, between}) {
        extra.u.dispose_func_params = {kOurs, handle};
        EXPECT_EQ(call(PF_Arbitrary_DISPOSE_FUNC, extra), PF_Err_NONE);
        EXPECT_FALSE(host.handles().isLive(handle));
    }
    EXPECT_EQ(host.handles().liveCount(), 2u);
}

TEST_F(ArbitraryData, FlattenAndUnflattenRoundTrip) {
    const PF_Handle text = textHandle("Warm skin");
    PF_ArbParamsExtra extra{};
    A_u_long size = 0;
    extra.u.flat_size_func_params = {kOurs, text, &size};
    ASSERT_EQ(call(PF_Arbitrary_FLAT_SIZE_FUNC, extra), PF_Err_NONE);
    ASSERT_EQ(size, 10u);
    std::string flat(size, 'x');
    extra.u.flatten_func_params = {kOurs, text, size, flat.data()};
    ASSERT_EQ(call(PF_Arbitrary_FLATTEN_FUNC, extra), PF_Err_NONE);
    EXPECT_EQ(flat, std::string("Warm skin", 10));

    PF_Handle restored = nullptr;
    extra.u.unflatten_func_params = {kOurs, size, flat.data(), &restored};
    ASSERT_EQ(call(PF_Arbitrary_UNFLATTEN_FUNC, extra), PF_Err_NONE);
    EXPECT_EQ(bytesOf(restored), bytesOf(text));

    PF_ArbCompareResult order = 99;
    extra.u.compare_func_params = {kOurs, text, restored, &order};
    ASSERT_EQ(call(PF_Arbitrary_COMPARE_FUNC, extra), PF_Err_NONE);
    EXPECT_EQ(order, PF_ArbCompare_EQUAL);
}

TEST_F(ArbitraryData, CompareOrdersTextsAndTakesANullHandleAsEqual) {
    const PF_Handle apple = textHandle("apple");
    const PF_Handle pear = textHandle("pear");
    struct Case {
        PF_Handle a, b;
        PF_ArbCompareResult expected;
    };
    for (const Case& c : {Case{apple, pear, PF_ArbCompare_LESS}, Case{pear, apple, PF_ArbCompare_MORE},
                          Case{pear, pear, PF_ArbCompare_EQUAL}, Case{nullptr, pear, PF_ArbCompare_EQUAL},
                          Case{apple, nullptr, PF_ArbCompare_EQUAL}}) {
        PF_ArbParamsExtra extra{};
        PF_ArbCompareResult order = 99;
        extra.u.compare_func_params = {kOurs, c.a, c.b, &order};
        EXPECT_EQ(call(PF_Arbitrary_COMPARE_FUNC, extra), PF_Err_NONE);
        EXPECT_EQ(order, c.expected);
    }
}

TEST_F(ArbitraryData, PrintGivesTheBareTextCutToTheBufferAndScanTakesItBack) {
    const PF_Handle text = textHandle("Smooth skin");
    PF_ArbParamsExtra extra{};
    A_u_long size = 0;
    extra.u.print_size_func_params = {kOurs, text, &size};
    ASSERT_EQ(call(PF_Arbitrary_PRINT_SIZE_FUNC, extra), PF_Err_NONE);
    EXPECT_EQ(size, 13u);
    extra.u.print_size_func_params = {kOurs, nullptr, &size};
    ASSERT_EQ(call(PF_Arbitrary_PRINT_SIZE_FUNC, extra), PF_Err_NONE);
    EXPECT_EQ(size, 1u);

    char roomy[32];
    std::memset(roomy, 'x', sizeof roomy);
    extra.u.print_func_params = {kOurs, PF_ArbPrint_NONE, text, sizeof roomy, roomy};
    ASSERT_EQ(call(PF_Arbitrary_PRINT_FUNC, extra), PF_Err_NONE);
    EXPECT_STREQ(roomy, "Smooth skin");
    char shortBuffer[8];
    std::memset(shortBuffer, 'x', sizeof shortBuffer);
    extra.u.print_func_params = {kOurs, PF_ArbPrint_ABBREVIATED, text, sizeof shortBuffer, shortBuffer};
    ASSERT_EQ(call(PF_Arbitrary_PRINT_FUNC, extra), PF_Err_NONE);
    EXPECT_EQ(std::string(shortBuffer, sizeof shortBuffer), std::string("Smooth ", 8))
        << "cut and terminated";
    extra.u.print_func_params = {kOurs, PF_ArbPrint_NONE, nullptr, sizeof roomy, roomy};
    ASSERT_EQ(call(PF_Arbitrary_PRINT_FUNC, extra), PF_Err_NONE);
    EXPECT_EQ(std::string(roomy, sizeof roomy), std::string(sizeof roomy, '\0'))
        << "a null handle prints nothing";

    // Scan keeps the text up to its terminator or the count, with no terminator of its own.
    PF_Handle scanned = nullptr;
    extra.u.scan_func_params = {kOurs, "Smooth skin", 100, &scanned};
    ASSERT_EQ(call(PF_Arbitrary_SCAN_FUNC, extra), PF_Err_NONE);
    EXPECT_EQ(bytesOf(scanned), "Smooth skin");
    PF_Handle part = nullptr;
    extra.u.scan_func_params = {kOurs, "Smooth skin", 6, &part};
    ASSERT_EQ(call(PF_Arbitrary_SCAN_FUNC, extra), PF_Err_NONE);
    EXPECT_EQ(bytesOf(part), "Smooth");
}

TEST_F(ArbitraryData, ASubCommandPastTheLastDoesNothing) {
    PF_ArbParamsExtra extra{};
    PF_Handle made = nullptr;
    extra.u.new_func_params = {kOurs, &made};
    EXPECT_EQ(call(PF_Arbitrary_SCAN_FUNC + 1, extra), PF_Err_NONE);
    EXPECT_EQ(made, nullptr);
    EXPECT_EQ(host.handles().liveCount(), 0u);
}

}  // namespace TW_FILE_LOCAL
}  // namespace Tw::Tools::AeHost
