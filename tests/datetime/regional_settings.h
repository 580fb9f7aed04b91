// Regional settings for date tests: the five "intl" keys the library reads.
// Natively they go into a profile file that VLCORE_PROFILE names; on
// Windows into the real system profile, saved first and put back after the
// test.  Each change is followed by the library's reload.
#pragma once

#include <cstdio>
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

    void SetUp() override {
#ifdef _WIN32
        for (int i = 0; i < 5; ++i) had_[i] = GetProfileStringA("intl", kKeys[i], "", saved_[i], sizeof saved_[i]) > 0;
#endif
        apply(Intl{});
    }
    void TearDown() override {
#ifdef _WIN32
        for (int i = 0; i < 5; ++i) WriteProfileStringA("intl", kKeys[i], had_[i] ? saved_[i] : nullptr);
#else
        set_env("VLCORE_PROFILE", nullptr);
        std::remove(path_.c_str());
#endif
        reload_regional_tables();
    }
    void apply(const Intl& intl) {
        const char* values[5] = {intl.iDate, intl.sLanguage, intl.sDate, intl.sShortDate, intl.sLongDate};
#ifdef _WIN32
        for (int i = 0; i < 5; ++i) WriteProfileStringA("intl", kKeys[i], values[i]);
#else
        std::ofstream file(path_);
        file << "[intl]\n";
        for (int i = 0; i < 5; ++i)
            if (values[i]) file << kKeys[i] << "=" << values[i] << "\n";
        file.close();
        set_env("VLCORE_PROFILE", path_.c_str());
#endif
        reload_regional_tables();
    }
#ifdef _WIN32
    char saved_[5][128] = {};
    bool had_[5] = {};
#else
    std::string path_ = ::testing::TempDir() + "vlcore_regional_test.ini";
#endif
};

}  // namespace vltest
