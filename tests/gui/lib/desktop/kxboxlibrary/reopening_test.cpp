#include "library_description.hpp"

#include <QProcess>
#include <boost/make_shared.hpp>

namespace KX::test {
namespace {

/// What a process of its own finds at a path.
std::string describedElsewhere(const QString& path)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(QStringLiteral(KX_REOPENING_HELPER), {path});
    EXPECT_TRUE(process.waitForFinished(-1)) << process.errorString().toStdString();
    EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(process.exitCode(), 0);
    return process.readAllStandardOutput().toStdString();
}

ProjectModel originalProject()
{
    ProjectModel model =
        project({{"Say%3a Hello/", {}},
                 {"Motions/Walk/box.bhx",
                  boxFile(R"(tooltip="Walks")", "<Bitmaps><bitmap>a.png</bitmap></Bitmaps>" +
                                                    std::string(behaviorContent()))},
                 {"Motions/Walk/images/a.png", "picture"},
                 {"Motions/Sit/behavior.bhx", boxFile()},
                 {"Motions/bxlinfo", orderFile({"Walk", "Sit"})},
                 {"Old/box.bhx", boxFile()},
                 {"50%25/Deep/Deeper/", {}},
                 {"bxlinfo", orderFile({"Old", "Motions"})}});
    model.setMetadata(q("Type"), q("KinestraBoxLibrary"));
    model.setMetadata(q("Version"), q("3.0"));
    return model;
}

/// Every kind of edit once.
void edit(BoxLibrary& library, ProjectModel& pictures)
{
    BoxLibraryNode* const root = library.boxRoot();
    library.setTranslations(
        translators({translator("fr", {"Library:/Motions/Walk", "Library:/Old", "Library:/50%25"}),
                     translator("pt_BR", {"Library:/Motions/Sit"})}));
    BoxLibraryNode* const motions = root->child("Motions");
    motions->child("Walk")->boxData()->updateData(q("Walk: fast?"), q("T\xc3\xbcr & <Tor>\n"),
                                                  {q("b.png"), q("c.png")}, false);
    BoxLibraryNode* const copy = motions->clone();
    root->insertChildren(1, {copy}, translators({translator("fr", {"Library:/Motions/Sit"})}));
    RootBoxDescription made = description("Say Hello", behaviorContent());
    made.resources =
        boost::make_shared<BoxResourceList>(&pictures, q("images"), QStringList{q("x/y.png")});
    motions->insertChild(1, made);
    root->appendChild("New folder")->appendChild("  .");
    BoxLibraryNode* const taken = motions->child("Sit")->take();
    library.projectModel().remove(q("Motions/Sit")); // else it would be a node again
    motions->saveFolder();
    root->child("50%")->insertChild(0, taken);
    removeChildTree(*root, root->child("Old")->index());
    root->moveChildren(0, 0, root->children().size());
    root->child("New folder")->setName("Renamed\\folder");
    root->saveAll();
}

class Reopening : public testing::TestWithParam<BoxLibrary::LibraryFormat>
{
protected:
    QString path() const { return m_directory.path("My library.bxl"); }

private:
    TemporaryDirectory m_directory;
};

INSTANTIATE_TEST_SUITE_P(Forms, Reopening,
                         testing::Values(BoxLibrary::Directory, BoxLibrary::Archive));

TEST_P(Reopening, FindsANewLibrary)
{
    const Library library = newLibrary();
    library->boxRoot()->appendChild("A");
    library->saveTo(path(), GetParam());
    EXPECT_EQ(describedElsewhere(path()), describe(*library));
}

TEST_P(Reopening, FindsEveryEdit)
{
    ProjectModel pictures = project({{"images/x/y.png", "another picture"}});
    const Library library = open(originalProject());
    edit(*library, pictures);
    library->saveTo(path(), GetParam());
    EXPECT_EQ(describedElsewhere(path()), describe(*library));
}

TEST_P(Reopening, FindsANodeWhereATakenOneLeftItsFiles)
{
    const Library library = open(project({{"A/box.bhx", boxFile()}, {"B/", {}}}));
    const DetachedNode taken(library->boxRoot()->child(0)->take());
    EXPECT_EQ(childNames(*library->boxRoot()), Names{"B"});
    library->boxRoot()->saveAll();
    library->saveTo(path(), GetParam());
    EXPECT_NE(describedElsewhere(path()), describe(*library));
    EXPECT_EQ(childNames(*open(ProjectModel(path()))->boxRoot()), (Names{"B", "A"}));
}

TEST_P(Reopening, FindsEveryEditOfALibraryThatWasOpened)
{
    {
        ProjectModel model = originalProject();
        model.save(path(), libraryFormatToProjectFormat(GetParam()), false);
    }
    ProjectModel pictures = project({{"images/x/y.png", "another picture"}});
    const Library library = open(ProjectModel(path()));
    const std::string before = describe(*library);
    edit(*library, pictures);
    EXPECT_EQ(describedElsewhere(path()), before);
    library->save();
    EXPECT_EQ(describedElsewhere(path()), describe(*library));
}

} // namespace
} // namespace KX::test
