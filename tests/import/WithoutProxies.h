// Test fixture: exchanges over HTTP that ignore the proxies in the environment.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>

namespace import_tests {

class WithoutProxies : public ::testing::Test {
protected:
    WithoutProxies() {
        for (const char* const name : {"http_proxy", "all_proxy", "ALL_PROXY", "no_proxy", "NO_PROXY"}) {
            unsetenv(name);
        }
    }
    ~WithoutProxies() override { unsetenv("http_proxy"); }
};

} // namespace import_tests
