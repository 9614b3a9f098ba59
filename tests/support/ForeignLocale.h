#pragma once

#include <clocale>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <locale>
#include <stdexcept>
#include <string>

#include "support/TemporaryDirectory.h"

namespace Support {

/// During its lifetime the locale of this process, in C and in C++, is one that writes 1.234.567,8. The
/// locale is created here, in the file format of the GNU C library, because a machine may have only its own.
class ForeignLocale {
 public:
  ForeignLocale() {
    std::filesystem::create_directory(mDirectory.Path() / NAME);
    std::ofstream(mDirectory.Path() / NAME / "LC_NUMERIC", std::ios::binary) << MakeNumericCategory();
    setenv("LOCPATH", mDirectory.Path().c_str(), 1);
    if (std::setlocale(LC_NUMERIC, NAME) == nullptr)
      throw std::runtime_error("the C library refuses the locale");
  }
  ~ForeignLocale() {
    std::locale::global(mPrevious);
    std::setlocale(LC_NUMERIC, "C");
    unsetenv("LOCPATH");
  }
  ForeignLocale(const ForeignLocale&) = delete;
  ForeignLocale& operator=(const ForeignLocale&) = delete;

 private:
  static constexpr const char* NAME = "xx_XX";

  struct Numbers final : std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
  };

  static std::string Bytes(std::uint32_t number) {
    return {reinterpret_cast<const char*>(&number), sizeof number};
  }

  static std::string MakeNumericCategory() {
    const std::string fields[] = {
        std::string(",\0", 2),     std::string(".\0", 2), std::string("\3\0", 2), Bytes(','), Bytes('.'),
        std::string("UTF-8\0", 6),
    };
    constexpr std::uint32_t MAGIC = 0x20031115 ^ LC_NUMERIC;
    std::string head = Bytes(MAGIC) + Bytes(std::size(fields));
    const std::size_t headSize = head.size() + std::size(fields) * sizeof(std::uint32_t);
    std::string content;
    for (const std::string& field : fields) {
      content.resize((content.size() + 3) / 4 * 4);
      head += Bytes(static_cast<std::uint32_t>(headSize + content.size()));
      content += field;
    }
    return head + content;
  }

  const TemporaryDirectory mDirectory;
  const std::locale mPrevious = std::locale::global(std::locale(std::locale::classic(), new Numbers));
};

}  // namespace Support
