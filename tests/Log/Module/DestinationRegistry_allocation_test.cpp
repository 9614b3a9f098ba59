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
  // NOLINTNEXTLINE(concurrency-mt-unsafe): alone in its process.
  DestinationRegistryWithoutMemory() { unsetenv("HOME"); }

  void SetBasePath(const std::string& name) const {
    YLog::SetBasePath((mDirectory.Path() / name).wstring().c_str());
  }
  /// Whether it is given out when so many allocations succeed and the next one fails.
  static bool IsGiven(const wchar_t* path, unsigned long successes) {
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

TEST_F(DestinationRegistryWithoutMemory, RegistersNothingThatItCannotGive) {
  unsigned long successes = 0;
  for (bool given = false; !given; ++successes) {
    SetBasePath("wanted");
    given = IsGiven(L"a.log", successes);
    // Whatever is registered is moved, and so comes into being there.
    SetBasePath("moved");
    EXPECT_EQ(given, fs::exists(mDirectory.Path() / "moved")) << successes;
  }
  EXPECT_GT(successes, 5U);
}

}  // namespace
