#pragma once

#include "Process.h"

/// Runs the current test again in a child process, whose result becomes the result of this test.
/// `program` is this program or a copy of it.
inline void runCurrentTestIn(const std::filesystem::path& program,
                             const DesktopTest::Environment& environment) {
    const auto& test = *testing::UnitTest::GetInstance()->current_test_info();
    const auto finished = run({program.string(), fmt::format("--gtest_filter={}.{}",
                                                             test.test_suite_name(), test.name())},
                              environment);
    EXPECT_EQ(finished.status, 0) << finished.output;
    EXPECT_NE(finished.output.find("[  PASSED  ] 1 test"), std::string::npos) << finished.output;
}
