#include <cstdlib>
#include <filesystem>
#include <new>
#include <string>

#include <YLog/YLog.h>

#include "support/AllocationCounter.h"
#include "support/TemporaryDirectory.h"

namespace {

namespace fs = std::filesystem;

class DestinationRegistryWithoutMemory : public testing::Test {
 protected:
  // NOLINTNEXTLINE(concurrency-mt-unsafe): each test runs alone in its process.
  DestinationRegistryWithoutMemory() { unsetenv("HOME"); }

  void SetBasePath(const std::string& name) const {
    YLog::SetBasePath((mDirectory.Path() / name).wstring().c_str());
  }
  /// Whether the file is returned if `successes` allocations succeed and the next one fails.
  static bool IsReturned(const wchar_t* path, unsigned long successes) {
    const Support::AllocationFailure failure(successes);
    try {
      return static_cast<bool>(YLog::GetDestination_DiskFile(path));
    } catch (const std::bad_alloc&) {
      return false;
    }
  }

  const YLog::Initializer mInitializer;
  const Support::TemporaryDirectory mDirectory;
};

TEST_F(DestinationRegistryWithoutMemory, RegistersNoFileThatItCannotReturn) {
  unsigned long successes = 0;
  for (bool returned = false; !returned; ++successes) {
    SetBasePath("wanted");
    returned = IsReturned(L"a.log", successes);
    // A registered file is moved, which creates it there.
    SetBasePath("moved");
    EXPECT_EQ(returned, fs::exists(mDirectory.Path() / "moved")) << successes;
  }
  EXPECT_GT(successes, 5U);
}

}  // namespace
