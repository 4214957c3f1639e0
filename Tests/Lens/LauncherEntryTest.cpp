#include "Platform/Linux/Lens/LauncherEntry.h"

#include <gtest/gtest.h>

namespace platform::linux::lens {
namespace {

constexpr std::string_view launcher = "\"/opt/quillfade\" share --view clean --";

TEST(LauncherEntries, TheApplicationHasAnotherNameInAllLanguagesAndStartsThroughTheLens) {
  EXPECT_EQ(launcherEntry("[Desktop Entry]\n"
                          "Type=Application\n"
                          "Name=Map\n"
                          "Name[de]=Karte\n"
                          "GenericName=Viewer\n"
                          "Exec=map --open %U\n",
                          launcher),
            "[Desktop Entry]\n"
            "X-Quillfade-Share=true\n"
            "Type=Application\n"
            "Name=Map (through Quillfade)\n"
            "Name[de]=Karte (through Quillfade)\n"
            "GenericName=Viewer\n"
            "Exec=\"/opt/quillfade\" share --view clean -- map --open %U\n");
}

TEST(LauncherEntries, ItsActionsKeepTheirNamesAndStartThroughTheLensToo) {
  EXPECT_EQ(launcherEntry("[Desktop Entry]\nName=Map\nExec=map\nActions=new;\n"
                          "[Desktop Action new]\nName=New\nExec = map --new\n",
                          launcher),
            "[Desktop Entry]\nX-Quillfade-Share=true\nName=Map (through Quillfade)\n"
            "Exec=\"/opt/quillfade\" share --view clean -- map\nActions=new;\n"
            "[Desktop Action new]\nName=New\nExec=\"/opt/quillfade\" share --view clean -- map --new\n");
}

TEST(LauncherEntries, NothingInItBypassesTheLens) {
  EXPECT_EQ(launcherEntry("[Desktop Entry]\nName=Map\nExec=map\nDBusActivatable=true\nMimeType=image/png;\n", "x"),
            "[Desktop Entry]\nX-Quillfade-Share=true\nName=Map (through Quillfade)\nExec=x map\n");
}

TEST(LauncherEntries, CommentsAndUnknownLinesStay) {
  EXPECT_EQ(
      launcherEntry("# Map\r\n\r\n[Desktop Entry]\r\nName=Map\r\nX-Other=Exec=1\r\nExec=map", "x"),
      "# Map\n\n[Desktop Entry]\nX-Quillfade-Share=true\nName=Map (through Quillfade)\nX-Other=Exec=1\nExec=x map\n");
}

TEST(LauncherEntries, AnythingButACompleteEntryIsNoApplication) {
  EXPECT_EQ(launcherEntry("", "x"), std::nullopt);
  EXPECT_EQ(launcherEntry("Name=Map\nExec=map\n", "x"), std::nullopt);
  EXPECT_EQ(launcherEntry("[Desktop Entry]\nName=Map\nURL=https://example.org\n", "x"), std::nullopt);
  EXPECT_EQ(launcherEntry("[Desktop Entry]\nExec=map\n", "x"), std::nullopt);
  EXPECT_EQ(launcherEntry("[Desktop Entry]\nName=Map\n[Desktop Action new]\nExec=map\n", "x"), std::nullopt);
  EXPECT_EQ(launcherEntry("[Desktop Entry]\nName=Map\nExec=map\nno entry at all\n", "x"), std::nullopt);
}

TEST(LauncherEntries, ALauncherIsRecognisedByItsMark) {
  constexpr std::string_view entry = "[Desktop Entry]\nName=Map\nExec=map\n";
  EXPECT_FALSE(isLauncherEntry(entry));
  const std::string made = launcherEntry(entry, "x").value();
  EXPECT_TRUE(isLauncherEntry(made));
  EXPECT_FALSE(isLauncherEntry("[Desktop Entry]\nName=Map\nExec=map\n[Other]\nX-Quillfade-Share=true\n"));
  EXPECT_FALSE(isLauncherEntry(""));
}

}  // namespace
}  // namespace platform::linux::lens
