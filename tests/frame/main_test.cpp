// KELUTIL_Main: start, query, language flag, module handle, file callback.

#include <cstdlib>
#include <fstream>
#include <string>

#include "support.h"
#include "vlcore.h"

namespace {

constexpr uint32_t kStart = 0, kEnd = 1, kSettingsChanged = 2, kQuery = 3, kLanguage = 4, kModule = 5, kCallback = 6;

uintptr_t call_main(uint32_t version, intptr_t value, uint32_t operation) {
    return KELUTIL_Main(nullptr, version, value, operation);
}

TEST(Main, VersionBoundIsInclusive) {
    const struct {
        uint32_t version;
        uintptr_t answer;
    } cases[] = {
        {0, 3783},           {6100, 3783},        {6101, 0}, {0xFFFF, 0}, {0x10000 + 6100, 3783},
        {0xFFFF0000u, 3783}, {0x10000 + 6101, 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE("version " + std::to_string(c.version));
        EXPECT_EQ(call_main(c.version, reinterpret_cast<intptr_t>("no-such-settings.ini"), kStart), c.answer);
    }
}

TEST(Main, OperationsAndTheirAnswers) {
    const struct {
        const char* name;
        uint32_t operation;
        uintptr_t answer;
    } cases[] = {
        {"query", kQuery, 3783},
        {"query, high bits ignored", 0x70000 + kQuery, 3783},
        {"end", kEnd, 0},
        {"settings changed", kSettingsChanged, 0},
        {"callback cleared", kCallback, 0},
        {"7 is unknown", 7, 0},
        {"0xFFFF is unknown", 0xFFFF, 0},
        {"high bits alone make operation 0 of 0x10000", 0x10003, 3783},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(call_main(6000, 0, c.operation), c.answer);
    }
}

TEST(Main, ModuleHandleIsTheLoadedLibrary) {
    const uintptr_t handle = call_main(0, 0, kModule);
    EXPECT_NE(handle, 0u);
#ifdef _WIN32
    EXPECT_EQ(handle, reinterpret_cast<uintptr_t>(GetModuleHandleA("VLCORE.dll")));
#endif
    EXPECT_EQ(call_main(0, 0, kModule), handle) << "stable across calls";
}

VL_LRESULT VLAPI host_proc(VL_HWND, VL_UINT, VL_WPARAM, VL_LPARAM) { return 0; }

TEST(Main, FileCallbackCanBeSetReplacedAndCleared) {
    EXPECT_EQ(call_main(0, reinterpret_cast<intptr_t>(&host_proc), kCallback), 0u);
    EXPECT_EQ(call_main(0, 0, kCallback), 0u);
}

// The language flag follows the system profile's "intl" language.  Natively
// the system profile is the file VLCORE_PROFILE names; on Windows it is the
// real one, changed for the test and put back afterwards.
class LanguageFlag : public ::testing::Test {
  protected:
#ifdef _WIN32
    void SetUp() override { had_ = GetProfileStringA("intl", "sLanguage", "", saved_, sizeof saved_) > 0; }
    void TearDown() override {
        WriteProfileStringA("intl", "sLanguage", had_ ? saved_ : nullptr);
        call_main(0, 0, kSettingsChanged);
    }
    void set_language(const char* value) { WriteProfileStringA("intl", "sLanguage", value); }
    void restore_default() { WriteProfileStringA("intl", "sLanguage", "ENU"); }
    char saved_[64] = {};
    bool had_ = false;
#else
    void TearDown() override {
        unsetenv("VLCORE_PROFILE");
        call_main(0, 0, kSettingsChanged);
        std::remove(path_.c_str());
    }
    void set_language(const char* value) {
        std::ofstream file(path_);
        file << "[intl]\niDate=1\n";
        if (value) file << "sLanguage=" << value << "\n";
        file.close();
        setenv("VLCORE_PROFILE", path_.c_str(), 1);
    }
    void restore_default() { unsetenv("VLCORE_PROFILE"); }
    std::string path_ = ::testing::TempDir() + "vlcore_main_test.ini";
#endif
};

TEST_F(LanguageFlag, FollowsTheRegionalLanguageAfterAReload) {
    const struct {
        const char* language;  // null: no such key
        uint32_t reload;
        uintptr_t flag;
    } cases[] = {
        {"HUN", kSettingsChanged, 1},   {"hun", kSettingsChanged, 1}, {"ENU", kSettingsChanged, 0}, {"h", kStart, 1},
        {nullptr, kSettingsChanged, 0}, {"Hrv", kStart, 1},           {"DEU", kStart, 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.language ? c.language : "(no key)");
        set_language(c.language);
        EXPECT_EQ(call_main(6000, 0, kLanguage), 0u) << "nothing changes before the reload";
        call_main(6000, 0, c.reload);
        EXPECT_EQ(call_main(6000, 0, kLanguage), c.flag);
        restore_default();
        call_main(6000, 0, kSettingsChanged);
        EXPECT_EQ(call_main(6000, 0, kLanguage), 0u);
    }
}

TEST_F(LanguageFlag, AVersionAboveTheBoundReloadsNothing) {
    set_language("HUN");
    EXPECT_EQ(call_main(6101, 0, kStart), 0u);
    EXPECT_EQ(call_main(6000, 0, kLanguage), 0u);
    EXPECT_EQ(call_main(6100, 0, kStart), 3783u);
    EXPECT_EQ(call_main(6000, 0, kLanguage), 1u);
}

}  // namespace
