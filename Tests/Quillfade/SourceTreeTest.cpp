// Includes run one way: the application and the adapters both include the ports, and never each other. Inside both, a
// folder includes only the folders that its line in a table names.

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace quillfade {
namespace {

namespace fs = std::filesystem;

const fs::path root = QUILLFADE_SOURCE_TREE;

bool isSource(const fs::path& path) {
  return path.extension() == ".h" || path.extension() == ".cpp" || path.extension() == ".mm";
}

std::vector<fs::path> sourcesIn(const fs::path& folder) {
  std::vector<fs::path> paths;
  for (const auto& entry : fs::directory_iterator(root / folder)) {
    if (entry.is_regular_file() && isSource(entry.path())) paths.push_back(entry.path());
  }
  return paths;
}

std::vector<fs::path> sourcesBelow(const fs::path& folder) {
  std::vector<fs::path> paths;
  for (const auto& entry : fs::recursive_directory_iterator(root / folder)) {
    if (entry.is_regular_file() && isSource(entry.path())) paths.push_back(entry.path());
  }
  return paths;
}

std::vector<std::string> linesOf(const fs::path& path) {
  std::ifstream stream(path);
  std::vector<std::string> lines;
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

// The file's includes and imports: what follows the directive, with its quotes or brackets.
std::vector<std::string> includesOf(const fs::path& path) {
  const std::regex include(R"(^\s*#\s*(include|import)\s+(\S+))");
  std::vector<std::string> names;
  for (const std::string& line : linesOf(path)) {
    if (std::smatch match; std::regex_search(line, match, include)) names.push_back(match[2]);
  }
  return names;
}

void expectIncludes(const std::vector<fs::path>& paths, const std::string& pattern) {
  ASSERT_FALSE(paths.empty());
  const std::regex allowed(pattern);
  for (const fs::path& path : paths) {
    for (const std::string& name : includesOf(path)) {
      EXPECT_TRUE(std::regex_match(name, allowed)) << path << " includes " << name;
    }
  }
}

// Headers of the C++ library have no capitals, suffixes or folders in their names.
const std::string standardHeader = "<[a-z0-9_]+>";
const std::string port = "\"Platform/[A-Za-z0-9]+\\.h\"";

TEST(SourceTree, TheApplicationIncludesOnlyThePortsAndTheStandardLibrary) {
  expectIncludes(sourcesBelow("Quillfade"),
                 standardHeader + "|" + port + "|\"Quillfade/([A-Za-z]+/)?[A-Za-z0-9]+\\.h\"");
}

TEST(SourceTree, ThePortsIncludeOnlyEachOtherAndTheStandardLibrary) {
  expectIncludes(sourcesIn("Platform"), standardHeader + "|" + port);
}

TEST(SourceTree, TheSimulatedDesktopNeedsNothingButThePorts) {
  expectIncludes(sourcesBelow("Platform/Simulated"),
                 standardHeader + "|" + port + "|\"Platform/Simulated/[A-Za-z]+\\.h\"");
}

TEST(SourceTree, NoAdapterIncludesTheApplicationOrAnotherAdapter) {
  int adapters = 0;
  for (const auto& folder : fs::directory_iterator(root / "Platform")) {
    if (!folder.is_directory()) continue;
    ++adapters;
    const std::string own = "\"Platform/" + folder.path().filename().string() + "/";
    for (const fs::path& path : sourcesBelow(folder.path())) {
      for (const std::string& name : includesOf(path)) {
        const bool isApplication = name.starts_with("\"Quillfade/") || name.starts_with("<Quillfade/");
        const bool isAdapter = name.starts_with("\"Platform/") && name.find('/', 10) != std::string::npos;
        EXPECT_FALSE(isApplication) << path << " includes " << name;
        EXPECT_TRUE(!isAdapter || name.starts_with(own)) << path << " includes " << name;
      }
    }
  }
  EXPECT_GE(adapters, 2);
}

// A folder of sources, and the sibling folders that its files may include: only folders further up the table, so there
// are no circles.
struct Room {
  std::string name;
  std::set<std::string> includes;
};

const std::vector<Room> applicationRooms = {
    {"Basics", {}},
    {"Keys", {"Basics"}},
    {"Settings", {"Basics", "Keys"}},
    {"Cover", {"Basics", "Settings"}},
    {"Selection", {"Basics"}},
    {"Application", {"Basics", "Keys", "Settings", "Cover", "Selection"}},
    {"CommandLine", {"Basics", "Keys", "Settings", "Cover", "Application"}},
};

const std::vector<Room> linuxRooms = {
    {"Posix", {}},
    {"Xcb", {}},
    {"Scene", {"Posix", "Xcb"}},
    {"Compositor", {"Xcb", "Scene"}},
    {"Stream", {"Posix", "Xcb", "Scene", "Compositor"}},
    {"Holes", {"Posix", "Xcb", "Scene", "Stream"}},
    {"Toolkit", {"Posix", "Xcb"}},
    {"Views", {"Toolkit"}},
    {"Cover", {"Posix", "Xcb", "Scene", "Stream", "Holes", "Toolkit", "Views"}},
    {"Input", {"Xcb", "Toolkit"}},
    {"Widgets", {"Toolkit", "Views", "Input"}},
    {"Session", {"Posix", "Xcb", "Scene", "Toolkit"}},
    {"Shortcuts", {"Posix", "Xcb", "Input", "Session"}},
    {"Tray", {"Posix", "Xcb", "Scene", "Toolkit", "Session"}},
    {"Settings", {"Posix"}},
    {"Protocol", {}},
    {"Lens", {"Posix", "Xcb", "Scene", "Compositor", "Protocol"}},
};

const std::vector<Room> macRooms = {
    {"Foundation", {}},
    {"Toolkit", {"Foundation"}},
    {"Capture", {"Foundation", "Toolkit"}},
    {"Views", {"Foundation", "Toolkit", "Capture"}},
    {"Windows", {"Foundation", "Toolkit", "Views"}},
    {"Input", {}},
    {"Tray", {"Foundation"}},
    {"Session", {"Foundation"}},
    {"Remote", {"Foundation"}},
    {"Settings", {"Foundation"}},
};

// Files directly in the folder may include any room.
void expectRooms(const fs::path& folder, const std::vector<Room>& rooms) {
  std::set<std::string> above;
  for (const Room& room : rooms) {
    for (const std::string& name : room.includes) EXPECT_TRUE(above.contains(name)) << room.name << " names " << name;
    const std::regex other("\"" + folder.string() + "/([^/]+)/.*");
    for (const fs::path& path : sourcesBelow(folder / room.name)) {
      for (const std::string& name : includesOf(path)) {
        std::smatch match;
        const bool allowed =
            !name.starts_with('"' + folder.string() + '/') ||
            (std::regex_match(name, match, other) && (match[1] == room.name || room.includes.contains(match[1])));
        EXPECT_TRUE(allowed) << path << " includes " << name;
      }
    }
    above.insert(room.name);
  }
  for (const auto& entry : fs::directory_iterator(root / folder)) {
    const std::string name = entry.path().filename().string();
    EXPECT_TRUE(!entry.is_directory() || above.contains(name)) << name << " is in no table";
  }
}

std::string lowered(std::string text) {
  std::ranges::transform(text, text.begin(),
                         [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
  return text;
}

// A line of CMake says what each target links: room(linux Scene linux-posix linux-xcb).
void expectTargets(const fs::path& folder, const std::string& prefix, const std::vector<Room>& rooms) {
  std::map<std::string, std::set<std::string>> expected;
  for (const Room& room : rooms) {
    std::set<std::string>& targets = expected[room.name];
    for (const std::string& name : room.includes) targets.insert(prefix + "-" + lowered(name));
  }
  const std::regex command("room\\(" + prefix + " (\\w+)(.*)\\)");
  std::map<std::string, std::set<std::string>> found;
  for (const std::string& text : linesOf(root / folder / "CMakeLists.txt")) {
    std::smatch match;
    if (!std::regex_match(text, match, command)) continue;
    std::set<std::string>& targets = found[match[1]];
    std::istringstream words(match[2].str());
    for (std::string word; words >> word;) {
      if (word.starts_with(prefix + "-")) targets.insert(word);
    }
  }
  EXPECT_EQ(found, expected);
}

TEST(SourceTree, ARoomOfTheApplicationIncludesOnlyTheRoomsOnItsLine) { expectRooms("Quillfade", applicationRooms); }

TEST(SourceTree, ARoomOfTheLinuxAdapterIncludesOnlyTheRoomsOnItsLine) { expectRooms("Platform/Linux", linuxRooms); }

TEST(SourceTree, ARoomOfTheMacAdapterIncludesOnlyTheRoomsOnItsLine) { expectRooms("Platform/Mac", macRooms); }

TEST(SourceTree, ATargetLinksTheRoomsThatItMayInclude) {
  expectTargets("Quillfade", "quillfade", applicationRooms);
  expectTargets("Platform/Linux", "linux", linuxRooms);
  expectTargets("Platform/Mac", "mac", macRooms);
}

TEST(SourceTree, NothingIsCompiledUnderConditions) {
  std::vector<fs::path> paths = sourcesBelow("Quillfade");
  for (const fs::path& path : sourcesBelow("Platform")) paths.push_back(path);
  ASSERT_FALSE(paths.empty());
  const std::regex condition(R"(^\s*#\s*(if|ifdef|ifndef|elif)\b)");
  for (const fs::path& path : paths) {
    for (const std::string& line : linesOf(path)) {
      EXPECT_FALSE(std::regex_search(line, condition)) << path << ": " << line;
    }
  }
}

// Longer texts are split over several lines in the sources.
TEST(SourceTree, EveryShortTextThatIsTranslatedComesFromTheApplication) {
  std::string application;
  for (const fs::path& path : sourcesBelow("Quillfade")) {
    for (const std::string& line : linesOf(path)) application += line;
  }
  const std::regex entry(R"re(^\s*"([^"\\]{1,60})": ".+",?$)re");
  int texts = 0;
  for (const auto& file : fs::directory_iterator(root / "Resources/translations")) {
    for (const std::string& line : linesOf(file.path())) {
      std::smatch match;
      if (!std::regex_match(line, match, entry)) continue;
      ++texts;
      EXPECT_NE(application.find('"' + match[1].str() + '"'), std::string::npos) << file.path() << ": " << match[1];
    }
  }
  EXPECT_GT(texts, 20);
}

}  // namespace
}  // namespace quillfade
