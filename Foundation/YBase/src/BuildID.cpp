#include "BuildID.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <span>
#include <string_view>
#include <vector>

#include "RegularFile.h"

namespace YBase {
namespace {

using Segment = ElfW(Phdr);

/// Takes a number of bytes, and those that fill them up to a multiple of four, from the beginning of a text.
std::string_view Take(std::string_view& text, std::size_t size) noexcept {
  const std::string_view taken = text.substr(0, size);
  text.remove_prefix(std::min(text.size(), (size + 3) / 4 * 4));
  return taken;
}

/// The build ID among the notes of one segment.
std::string_view FindBuildID(std::string_view notes) noexcept {
  constexpr std::string_view OWNER("GNU\0", 4);
  ElfW(Nhdr) note;
  while (notes.size() >= sizeof note) {
    std::memcpy(&note, Take(notes, sizeof note).data(), sizeof note);
    const std::string_view owner = Take(notes, note.n_namesz);
    const std::string_view content = Take(notes, note.n_descsz);
    if (note.n_type == NT_GNU_BUILD_ID && owner == OWNER) return content;
  }
  return {};
}

// Notes are short; what is not must be something else.
constexpr std::size_t MAX_NOTES_SIZE = 65'536;

/// Whether the loader has put these notes into memory. Tools that pack programs leave odd ones behind.
bool IsInMemory(const Segment& notes, std::span<const Segment> segments) noexcept {
  return notes.p_memsz <= MAX_NOTES_SIZE &&
         std::any_of(segments.begin(), segments.end(), [&notes](const Segment& segment) {
           return segment.p_type == PT_LOAD && (segment.p_flags & PF_R) != 0 &&
                  notes.p_vaddr >= segment.p_vaddr &&
                  notes.p_vaddr + notes.p_memsz <= segment.p_vaddr + segment.p_filesz;
         });
}

}  // namespace

std::string GetBuildID(const dl_phdr_info& module) {
  const std::span segments(module.dlpi_phdr, module.dlpi_phnum);
  for (const Segment& segment : segments) {
    if (segment.p_type != PT_NOTE || !IsInMemory(segment, segments)) continue;
    // NOLINTNEXTLINE(performance-no-int-to-ptr): a number is what the loader tells.
    const auto* const notes = reinterpret_cast<const char*>(module.dlpi_addr + segment.p_vaddr);
    const std::string_view found = FindBuildID({notes, segment.p_memsz});
    if (!found.empty()) return std::string(found);
  }
  return {};
}

std::optional<std::string> ReadBuildID(const char* path) {
  const RegularFile file(path);
  if (IsShortage(file.GetError())) return std::nullopt;
  ElfW(Ehdr) header;
  if (!file.Read(&header, sizeof header, 0) || std::memcmp(header.e_ident, ELFMAG, SELFMAG) != 0) return "";
  std::vector<Segment> segments(header.e_phnum);
  if (!file.Read(segments.data(), segments.size() * sizeof(Segment), header.e_phoff)) return "";
  for (const Segment& segment : segments) {
    if (segment.p_type != PT_NOTE || segment.p_filesz > MAX_NOTES_SIZE) continue;
    std::string notes(segment.p_filesz, '\0');
    if (!file.Read(notes.data(), notes.size(), segment.p_offset)) continue;
    const std::string_view found = FindBuildID(notes);
    if (!found.empty()) return std::string(found);
  }
  return "";
}

}  // namespace YBase
