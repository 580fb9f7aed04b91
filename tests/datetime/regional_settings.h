// Regional settings for date tests: the five "intl" keys the library reads.
// Natively they go into a profile file that VLCORE_PROFILE names; on
// Windows into the real system profile, saved first and put back after the
// test.  Each change is followed by the library's reload.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>

#include "support.h"
#include "vlcore.h"

namespace vltest {

struct Intl {
    const char* iDate = nullptr;  // null: key absent, the library's default applies
    const char* sLanguage = nullptr;
    const char* sDate = nullptr;
    const char* sShortDate = nullptr;
    const char* sLongDate = nullptr;
};

inline void reload_regional_tables() { KELUTIL_date2str(0.0, 32768, nullptr); }

class RegionalSettings : public ::testing::Test {
  protected:
    static constexpr const char* kKeys[5] = {"iDate", "sLanguage", "sDate", "sShortDate", "sLongDate"};

#ifdef _WIN32
    void SetUp() override {
        for (int i = 0; i < 5; ++i) had_[i] = GetProfileStringA("intl", kKeys[i], "", saved_[i], sizeof saved_[i]) > 0;
        apply(Intl{});
    }
    void TearDown() override {
        for (int i = 0; i < 5; ++i) WriteProfileStringA("intl", kKeys[i], had_[i] ? saved_[i] : nullptr);
        reload_regional_tables();
    }
    void apply(const Intl& intl) {
        const char* values[5] = {intl.iDate, intl.sLanguage, intl.sDate, intl.sShortDate, intl.sLongDate};
        for (int i = 0; i < 5; ++i) WriteProfileStringA("intl", kKeys[i], values[i]);
        reload_regional_tables();
    }
    char saved_[5][128] = {};
    bool had_[5] = {};
#else
    void SetUp() override { apply(Intl{}); }
    void TearDown() override {
        unsetenv("VLCORE_PROFILE");
        reload_regional_tables();
        std::remove(path_.c_str());
    }
    void apply(const Intl& intl) {
        const char* values[5] = {intl.iDate, intl.sLanguage, intl.sDate, intl.sShortDate, intl.sLongDate};
        std::ofstream file(path_);
        file << "[intl]\n";
        for (int i = 0; i < 5; ++i)
            if (values[i]) file << kKeys[i] << "=" << values[i] << "\n";
        file.close();
        setenv("VLCORE_PROFILE", path_.c_str(), 1);
        reload_regional_tables();
    }
    std::string path_ = ::testing::TempDir() + "vlcore_regional_test.ini";
#endif
};

}  // namespace vltest
