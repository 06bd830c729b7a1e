#include "support.hpp"

#include <sys/stat.h>

// What paths mean to a model: how files are listed, what is normalised, refused and left alone.
namespace pk::project::test {

struct ListCase
{
    const char* name;
    const char* directory;
    bool includeDirectories;
    bool recursive;
    bool directoriesOnly;
    QStringList expected;
};

class FileList : public testing::TestWithParam<ListCase>
{
};

TEST_P(FileList, HoldsRelativeNamesSortedByTheirBytes)
{
    const TemporaryDirectory directory;
    for (const Form form : {Form::Directory, Form::Archive}) {
        ProjectModel model;
        model.writeFile(q("Walk/box.bhx"), "");
        model.writeFile(q("Walk/images/a.png"), "");
        model.writeFile(q("Walk/images-b"), "");
        model.writeFile(q("Walk/\xef\xbf\xbd"), "");
        model.writeFile(q("Walk/\xf0\x90\x80\x80"), "");
        model.mkdir(q("Walk/sub/deep"), true);
        const QString path = directory.path(form == Form::Directory ? "d" : "a");
        model.save(path, formatOf(form), false);
        const ProjectModel opened(path);
        const ListCase& c = GetParam();
        for (const ProjectModel* const each : {static_cast<const ProjectModel*>(&model), &opened}) {
            EXPECT_EQ(each->getFileList(q(c.directory), c.includeDirectories, c.recursive,
                                        c.directoriesOnly),
                      c.expected);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(
    All, FileList,
    testing::Values(
        ListCase{"Files",
                 "Walk",
                 false,
                 false,
                 false,
                 {q("box.bhx"), q("images-b"), q("\xef\xbf\xbd"), q("\xf0\x90\x80\x80")}},
        ListCase{"FilesOfSlashedDirectory",
                 "./Walk//",
                 false,
                 false,
                 false,
                 {q("box.bhx"), q("images-b"), q("\xef\xbf\xbd"), q("\xf0\x90\x80\x80")}},
        ListCase{"FilesBelow",
                 "Walk",
                 false,
                 true,
                 false,
                 {q("box.bhx"), q("images-b"), q("images/a.png"), q("\xef\xbf\xbd"),
                  q("\xf0\x90\x80\x80")}},
        ListCase{"All",
                 "Walk",
                 true,
                 false,
                 false,
                 {q("box.bhx"), q("images"), q("images-b"), q("sub"), q("\xef\xbf\xbd"),
                  q("\xf0\x90\x80\x80")}},
        ListCase{"Directories", "Walk", true, false, true, {q("images"), q("sub")}},
        ListCase{"DirectoriesBelow",
                 "",
                 true,
                 true,
                 true,
                 {q("Walk"), q("Walk/images"), q("Walk/sub"), q("Walk/sub/deep")}},
        ListCase{
            "OnlyDirectoriesAreDirectories", "Walk", false, false, true, {q("images"), q("sub")}},
        ListCase{"NoneOfAMissingDirectory", "Run", true, true, false, {}},
        ListCase{"NoneOfAFile", "Walk/box.bhx", true, true, false, {}}),
    [](const auto& c) { return std::string(c.param.name); });

struct ModelPathCase
{
    const char* name;
    QString path;
};

class RefusedModelPath : public testing::TestWithParam<ModelPathCase>
{
};

TEST_P(RefusedModelPath, IsRefusedByEveryOperation)
{
    const QString path = GetParam().path;
    const TemporaryDirectory directory;
    ProjectModel model;
    model.writeFile(q("a"), "1");
    const Tree before = treeOf(model);
    EXPECT_FALSE(model.hasFile(path));
    EXPECT_EQ(model.fopen(path, q("rb")), nullptr);
    EXPECT_EQ(model.fopen(path, q("wb")), nullptr);
    EXPECT_THROW(model.getFileList(path, true, true, false), InvalidPath);
    EXPECT_THROW(model.readFile(path), InvalidPath);
    EXPECT_THROW(model.writeFile(path, "x"), InvalidPath);
    EXPECT_THROW(model.getFileLocalPath(path), InvalidPath);
    EXPECT_THROW(model.mkdir(path, true), InvalidPath);
    EXPECT_THROW(model.move(q("a"), path, true), InvalidPath);
    EXPECT_THROW(model.move(path, q("b"), true), InvalidPath);
    EXPECT_THROW(model.remove(path), InvalidPath);
    EXPECT_THROW(model.importFile(model, path, q("b"), true), InvalidPath);
    EXPECT_THROW(model.importFile(model, q("a"), path, true), InvalidPath);
    EXPECT_THROW(model.exportFile(path, directory.path("x"), true), InvalidPath);
    EXPECT_EQ(treeOf(model), before);
}

INSTANTIATE_TEST_SUITE_P(
    All, RefusedModelPath,
    testing::Values(ModelPathCase{"Absolute", q("/a")}, ModelPathCase{"Top", q("/")},
                    ModelPathCase{"Parent", q("..")}, ModelPathCase{"ParentInside", q("b/../a")},
                    ModelPathCase{"ParentAtTheEnd", q("a/..")},
                    ModelPathCase{"Nul", QString(QChar(0))},
                    ModelPathCase{"NulInside", q("a") + QChar(0) + q("b")},
                    ModelPathCase{"Mark", QChar(0xfeff) + q("a")},
                    ModelPathCase{"MarkAlone", QString(QChar(0xfeff))},
                    ModelPathCase{"MarkInside", q("b/") + QChar(0xfeff) + q("a")}),
    [](const auto& c) { return std::string(c.param.name); });

class NormalisedModelPath : public testing::TestWithParam<ModelPathCase>
{
};

TEST_P(NormalisedModelPath, IsTheSameFile)
{
    ProjectModel model;
    model.writeFile(q("a/b"), "1");
    EXPECT_TRUE(model.hasFile(GetParam().path));
    model.writeFile(GetParam().path, "2");
    EXPECT_EQ(model.readFile(q("a/b")), QByteArray("2"));
    EXPECT_EQ(model.getFileList(QString(), true, true, false), QStringList({q("a"), q("a/b")}));
}

INSTANTIATE_TEST_SUITE_P(
    All, NormalisedModelPath,
    testing::Values(ModelPathCase{"Plain", q("a/b")}, ModelPathCase{"Dot", q("./a/b")},
                    ModelPathCase{"Dots", q("././a/b")}, ModelPathCase{"TrailingSlash", q("a/b/")},
                    ModelPathCase{"Doubled", q("a//b")}, ModelPathCase{"DotInside", q("a/./b")}),
    [](const auto& c) { return std::string(c.param.name); });

class VersionControlName : public testing::TestWithParam<const char*>
{
};

TEST_P(VersionControlName, IsNoPartOfTheProject)
{
    const TemporaryDirectory directory;
    const QString path = directory.path("Library");
    const QString inside = q(GetParam()) + q("/config");
    putLocal(path + q("/a"), "1");
    putLocal(path + q("/") + inside, "secret");
    ProjectModel model(path);
    EXPECT_EQ(model.getFileList(QString(), true, true, false), QStringList(q("a")));
    EXPECT_FALSE(model.hasFile(inside));
    EXPECT_EQ(model.readFile(inside), QByteArray());
    EXPECT_EQ(model.fopen(inside, q("rb")), nullptr);
    EXPECT_EQ(model.fopen(inside, q("wb")), nullptr);
    EXPECT_THROW(model.getFileLocalPath(inside), PathNotFound);
    EXPECT_THROW(model.writeFile(inside, "x"), InvalidPath);
    EXPECT_THROW(model.mkdir(q(GetParam()), true), InvalidPath);
    EXPECT_THROW(model.move(q(GetParam()), q("b"), true), PathNotFound);
    EXPECT_THROW(model.move(q("a"), q(GetParam()), true), InvalidPath);
    EXPECT_THROW(model.remove(q(GetParam())), PathNotFound);
    EXPECT_THROW(model.exportFile(q(GetParam()), directory.path("x"), true), PathNotFound);
    ProjectModel copy;
    copy.importFile(model, QString(), q("sub"), true);
    EXPECT_EQ(treeOf(copy), Tree({{"sub/", ""}, {"sub/a", "1"}}));

    model.remove(QString());
    model.writeFile(q("b"), "2");
    model.save(QString(), ArchiveFormat::Source, true);
    EXPECT_EQ(getLocal(path + q("/") + inside), QByteArray("secret"));
    EXPECT_EQ(treeOf(ProjectModel(path)), Tree({{"b", "2"}}));
}

TEST_P(VersionControlName, StaysWhenAnotherProjectIsSavedThere)
{
    const TemporaryDirectory directory;
    const QString path = directory.path("Library");
    const QString inside = path + q("/") + q(GetParam()) + q("/config");
    putLocal(inside, "secret");
    putLocal(path + q("/same"), "same");
    putLocal(path + q("/gone/x"), "old");
    struct stat before = {};
    ASSERT_EQ(::stat((path + q("/same")).toStdString().c_str(), &before), 0);
    ProjectModel model;
    model.writeFile(q("same"), "same");
    model.writeFile(q("new/y"), "new");
    model.setMetadata(q("title"), q("t"));
    model.save(path, ArchiveFormat::Directory, true);
    EXPECT_EQ(getLocal(inside), QByteArray("secret"));
    EXPECT_EQ(treeOf(ProjectModel(path)), Tree({{"new/", ""}, {"new/y", "new"}, {"same", "same"}}));
    struct stat after = {};
    ASSERT_EQ(::stat((path + q("/same")).toStdString().c_str(), &after), 0);
    EXPECT_EQ(after.st_ino, before.st_ino);
    EXPECT_EQ(model.getSourcePath(), path);
    model.writeFile(q("same"), "changed");
    model.save(QString(), ArchiveFormat::Source, true);
    EXPECT_EQ(getLocal(path + q("/same")), QByteArray("changed"));
    EXPECT_EQ(ProjectModel(path).getMetadata(q("title")), q("t"));
    EXPECT_THROW(model.save(path, ArchiveFormat::Zip, true), Error);
    EXPECT_EQ(getLocal(inside), QByteArray("secret"));
}

INSTANTIATE_TEST_SUITE_P(All, VersionControlName, testing::Values(".git", ".hg", ".svn"),
                         [](const auto& c) { return std::string(c.param + 1); });

} // namespace pk::project::test
