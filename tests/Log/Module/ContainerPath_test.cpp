#include <gtest/gtest.h>

#include "Module/BasePath.h"

namespace {

using YLog::GetContainerPath;

const std::string ATELIER = "/Library/Containers/com.vellatorquine.Atelier.FolioComposer/Data";
const std::string OBSERVATORY = "/Library/Containers/com.vellatorquine.Observatory.FolioComposer/Data";

TEST(ContainerPath, DependsOnlyOnTheFileNameOfTheProgram) {
  EXPECT_EQ(GetContainerPath("/home/u", "/opt/bin/Vellatorquine Atelier"), "/home/u" + ATELIER);
  EXPECT_EQ(GetContainerPath("/home/u", "Vellatorquine Atelier"), "/home/u" + ATELIER);
  EXPECT_EQ(GetContainerPath("/home/u", "/opt/Vellatorquine Atelier/server"), "/home/u" + OBSERVATORY);
  EXPECT_EQ(GetContainerPath("/home/u", "/opt/vellatorquine atelier"), "/home/u" + OBSERVATORY);
  EXPECT_EQ(GetContainerPath("/home/u", ""), "/home/u" + OBSERVATORY);
}

TEST(ContainerPath, UsesHomeUnchanged) {
  EXPECT_EQ(GetContainerPath("/home/u/", "x"), "/home/u/" + OBSERVATORY);
  EXPECT_EQ(GetContainerPath("", "x"), OBSERVATORY);
}

}  // namespace
