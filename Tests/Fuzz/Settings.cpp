// The settings file: any content gives values or defaults and is kept, in place or aside; a change makes the file good.

#include <filesystem>
#include <fstream>
#include <iterator>

#include "Platform/Linux/Settings/SettingsFile.h"
#include "Quillfade/Basics/RectText.h"
#include "Quillfade/Settings/StoredValues.h"
#include "Tests/Fuzz/Fuzz.h"

namespace {

namespace fs = std::filesystem;

std::string content(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

// One directory for the whole run, in memory where possible.
const fs::path& directory() {
  static const fs::path path = [] {
    std::string pattern =
        (fs::exists("/dev/shm") ? fs::path("/dev/shm") : fs::temp_directory_path()) / "quillfade-fuzz-XXXXXX";
    fuzz::expect(::mkdtemp(pattern.data()) != nullptr, "there is a directory to work in");
    std::atexit([] { fs::remove_all(directory()); });
    return fs::path(pattern);
  }();
  return path;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t length) {
  static const bool isQuiet = (std::cerr.setstate(std::ios::failbit), true);
  fuzz::expect(isQuiet, "the sentences about damage go nowhere");
  const fs::path path = directory() / "settings.json";
  const fs::path aside = directory() / "settings.json.damaged";
  const std::string written(fuzz::text(bytes, length));
  fs::remove(aside);
  std::ofstream(path, std::ios::binary) << written;
  platform::linux::settings::SettingsFile settings(path.string());
  for (const char* key : {"enabled", "style", "outline", "region"}) {
    const auto value = settings.object(key);
    (void)quillfade::asInteger(value);
    (void)quillfade::asBool(value);
    (void)quillfade::readBool(value);
    if (const auto text = quillfade::asString(value)) (void)quillfade::rectFromText(*text);
  }
  const bool isKept = content(path) == written || content(aside) == written;
  if (!isKept) std::abort();
  settings.set("outline", false);
  platform::linux::settings::SettingsFile again(path.string());
  if (quillfade::asBool(again.object("outline")) != false) std::abort();
  return 0;
}
