#include "navigation/NodePaths.h"

#include <gtest/gtest.h>

namespace {

const QString kWerkmap = "/model/boezem";

QString Path(const QString& key)
{
    return PathOfNode(key, "\\", kWerkmap);
}
QString Key(const QString& path)
{
    return NodeOfPath(path, "\\", kWerkmap);
}

TEST(NodePathsTest, TheRootWordIsReplacedByTheWorkFolder)
{
    EXPECT_EQ(Path("ROOTLOCATIES"), "/model/boezem");
    EXPECT_EQ(Path("ROOTLOCATIES\\Plas-04"), "/model/boezem/Plas-04");
    EXPECT_EQ(Path("ROOTLOCATIES\\Plas-04\\berekeningen\\b_p"),
              "/model/boezem/Plas-04/berekeningen/b_p");
    EXPECT_EQ(Path("ROOTDIJKRINGEN"), "/model/boezem/Dijkringen");
    EXPECT_EQ(Path("ROOTDIJKRINGEN\\Oost"), "/model/boezem/Dijkringen/Oost");
    EXPECT_EQ(Path("ROOTBEREKENINGEN\\b"), "/model/boezem/b");
    EXPECT_EQ(Path("rootlocaties\\Plas-04"), "/model/boezem/Plas-04");
}

TEST(NodePathsTest, OtherKeysHaveNoFolder)
{
    EXPECT_EQ(Path(""), "");
    EXPECT_EQ(Path("ROOTPROFIELEN"), "");
    EXPECT_EQ(Path("ROOTPROFIELEN\\Gras"), "");
    EXPECT_EQ(Path("ROOTLOCATIESX\\a"), "");
    EXPECT_EQ(Path("Plas-04"), "");
}

TEST(NodePathsTest, APathGoesBackToItsKey)
{
    for (const char* key :
         {"ROOTLOCATIES", "ROOTLOCATIES\\Plas-04", "ROOTLOCATIES\\Plas-04\\berekeningen\\b_p",
          "ROOTDIJKRINGEN", "ROOTDIJKRINGEN\\Oost\\berekeningen\\Overloop"})
        EXPECT_EQ(Key(Path(key)), key);
}

TEST(NodePathsTest, PathsCompareWithoutCaseAndWithEitherSeparator)
{
    EXPECT_EQ(Key("/MODEL/boezem/Plas-04/Berekeningen/b"),
              "ROOTLOCATIES\\Plas-04\\Berekeningen\\b");
    EXPECT_EQ(NodeOfPath("D:\\model\\boezem\\dijkringen\\Oost", "\\", "d:\\model\\boezem"),
              "ROOTDIJKRINGEN\\Oost");
}

TEST(NodePathsTest, PathsOutsideTheWorkFolderHaveNoKey)
{
    EXPECT_EQ(Key("/model/boezem2/Plas"), "");
    EXPECT_EQ(Key("/elders/Plas"), "");
    EXPECT_EQ(Key(""), "");
}

} // namespace
