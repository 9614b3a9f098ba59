#pragma once

#include <cstdlib>

#include <gtest/gtest.h>

/// Runs the rest of a test in a process of its own, in which no stack has been taken yet, however the test
/// program is run. An expectation that fails there fails the test.
template <class Work>
void RunInNewProcess(Work work) {
  // This starts the program again and runs it up to here. A fork would inherit what the process has read.
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(
      {
        work();
        std::_Exit(testing::Test::HasFailure() ? 1 : 0);
      },
      testing::ExitedWithCode(0), "");
}
