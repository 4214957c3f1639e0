// Imports run one way: the application and the adapters both look at the ports, and never at each other.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <regex>
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

// What stands after #include or #import in each file, quotes and brackets included.
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

// The headers of the C++ library have neither capitals, suffixes nor folders in their names.
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

// Longer texts are broken over several lines in the sources.
TEST(SourceTree, EveryShortTextThatIsTranslatedIsOneOfTheApplications) {
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
