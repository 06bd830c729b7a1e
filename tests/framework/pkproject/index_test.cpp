#include "index.hpp"
#include "support.hpp"

#include <pk/project/error.hpp>

#include <malloc.h>
#include <string>

namespace pk::project::test {

namespace {

constexpr int a_manyBoxes = 10'000;

std::string boxName(int number)
{
    return "box " + std::to_string(number) + ".xar";
}

std::shared_ptr<StagedFile> staged(const std::string& bytes)
{
    return Staging::make()->write("a", bytes.data(), bytes.size());
}

// Fills an index with directories and files of a source, as a source does.
Entry& load(Index& index, const ProjectPath& path, bool isDirectory)
{
    Entry* at = &index.root();
    for (std::size_t i = 0; i < path.size(); ++i) {
        Entry* const next = Index::child(*at, path[i]);
        const bool last = i + 1 == path.size();
        at = next != nullptr ? next
                             : &Index::appendLoaded(*at, path[i], !last || isDirectory,
                                                    isDirectory ? 0755 : 0644);
        Index::sortLoaded(*at->parent);
    }
    return *at;
}

// All paths of the tree, directories with a slash.
std::vector<std::string> pathsOf(const Entry& directory)
{
    std::vector<std::string> paths;
    for (const auto& child : directory.folder->children) {
        EXPECT_EQ(child->parent, &directory);
        paths.push_back(Index::path(*child) + (child->isDirectory() ? "/" : ""));
        if (child->isDirectory()) {
            const auto below = pathsOf(*child);
            paths.insert(paths.end(), below.begin(), below.end());
        }
    }
    return paths;
}

using Paths = std::vector<std::string>;

} // namespace

class AnIndex : public testing::Test
{
protected:
    AnIndex()
    {
        load(m_index, {"motions", "walk"}, false);
        load(m_index, {"motions", "run"}, false);
        load(m_index, {"other"}, true);
    }
    Entry& at(const ProjectPath& path) const { return m_index.get(path); }
    bool isNowhere(const ProjectPath& path) const { return m_index.find(path) == nullptr; }

    Index m_index;
};

TEST_F(AnIndex, FindsWhatIsThere)
{
    EXPECT_EQ(m_index.find({}), &m_index.root());
    EXPECT_EQ(Index::path(at({"motions", "walk"})), "motions/walk");
    EXPECT_TRUE(isNowhere({"motions", "Walk"}));
    EXPECT_TRUE(isNowhere({"motions", "walk", "x"}));
    EXPECT_NE(messageOf<PathNotFound>([&] { at({"x", "y"}); }).find("'x/y'"), std::string::npos);
    EXPECT_FALSE(m_index.isModified());
}

TEST_F(AnIndex, HasNoReservedPaths)
{
    EXPECT_THROW(m_index.makeDirectories({".git", "x"}), InvalidPath);
    EXPECT_THROW(m_index.putFile(m_index.root(), ".kxproject", staged("")), InvalidPath);
    EXPECT_TRUE(isNowhere({".git"}));
    EXPECT_NO_THROW(m_index.putFile(at({"other"}), ".git", staged("")));
}

TEST_F(AnIndex, SortsByBytes)
{
    for (const char* const name : {"b", "B", "\xc3\xa4", "a.b", "a", "a b"}) {
        m_index.putFile(at({"other"}), name, staged(""));
    }
    EXPECT_EQ(pathsOf(at({"other"})),
              (Paths{"other/B", "other/a", "other/a b", "other/a.b", "other/b", "other/\xc3\xa4"}));
}

TEST_F(AnIndex, RefusesAFileWhereADirectoryIsAndTheOtherWayRound)
{
    EXPECT_THROW(m_index.putFile(m_index.root(), "other", staged("")), AlreadyExists);
    EXPECT_THROW(m_index.makeDirectories({"motions", "walk", "x"}), AlreadyExists);
    EXPECT_FALSE(m_index.isModified());
}

TEST_F(AnIndex, KnowsWhereTheSourceHasWhatWasMoved)
{
    Entry& motions = at({"motions"});
    m_index.move(motions, at({"other"}), "moved");
    Entry& walk = at({"other", "moved", "walk"});
    EXPECT_EQ(Index::sourcePath(walk), "motions/walk");
    m_index.move(walk, m_index.root(), "walk");
    EXPECT_EQ(Index::path(walk), "walk");
    EXPECT_EQ(Index::sourcePath(walk), "motions/walk");
    EXPECT_EQ(originalInSource(walk), &walk);
}

TEST_F(AnIndex, IsUnmodifiedWhenEverythingIsBack)
{
    Entry& motions = at({"motions"});
    m_index.move(motions, at({"other"}), "moved");
    EXPECT_TRUE(m_index.isModified());
    m_index.move(motions, m_index.root(), "motions");
    EXPECT_FALSE(m_index.isModified());
}

TEST_F(AnIndex, RefusesToMoveADirectoryIntoItself)
{
    Entry& motions = at({"motions"});
    m_index.makeDirectories({"motions", "below"});
    EXPECT_THROW(m_index.move(motions, at({"motions", "below"}), "x"), InvalidPath);
    EXPECT_THROW(m_index.move(motions, motions, "x"), InvalidPath);
    EXPECT_EQ(&at({"motions"}), &motions);
}

TEST_F(AnIndex, RevivesADirectoryThatIsMadeAgain)
{
    Entry& motions = at({"motions"});
    m_index.remove(motions);
    EXPECT_TRUE(isNowhere({"motions"}));
    EXPECT_EQ(&m_index.makeDirectories({"motions"}), &motions);
    EXPECT_TRUE(isNowhere({"motions", "walk"}));
    Entry& walk = m_index.putFile(motions, "walk", staged("again"));
    EXPECT_TRUE(walk.inSource);
    EXPECT_TRUE(walk.rewritten);
}

TEST_F(AnIndex, KeepsTheBytesOfACopyWhoseOriginalIsRemoved)
{
    const Entry& walk = at({"motions", "walk"});
    const Entry& copy = m_index.putCopy(at({"other"}), "copy", walk, 0600);
    m_index.remove(at({"motions"}));
    m_index.sweep();
    EXPECT_EQ(originalInSource(copy), &walk);
    EXPECT_EQ(Index::sourcePath(walk), "motions/walk");
    EXPECT_FALSE(m_index.isAlive(walk));
    EXPECT_TRUE(m_index.isAlive(copy));
}

TEST_F(AnIndex, FindsWhatTheSourceHasWhereverItIsNow)
{
    const Entry* const b = &load(m_index, {"d", "b"}, false);
    const Entry* const a = &load(m_index, {"a"}, false);
    m_index.move(m_index.get({"d"}), m_index.root(), "moved");
    m_index.move(m_index.get({"a"}), m_index.get({"moved"}), "new");
    m_index.makeDirectories({"d"});
    EXPECT_EQ(m_index.findInSource({"d", "b"}), b);
    EXPECT_EQ(m_index.findInSource({"a"}), a);
    EXPECT_EQ(m_index.findInSource({"moved", "b"}), nullptr);
    EXPECT_EQ(m_index.findInSource({"moved", "new"}), nullptr);
    m_index.remove(m_index.get({"moved"}));
    EXPECT_EQ(m_index.findInSource({"d", "b"}), b);
    EXPECT_EQ(m_index.findInSource({"a"}), a);
    EXPECT_EQ(m_index.findInSource({"d", "missing"}), nullptr);
}

TEST_F(AnIndex, FreesADirectoryThatWasRemovedInsideItsOwnChild)
{
    const auto bytes = staged("1");
    {
        Index index;
        load(index, {"outer", "middle", "inner", "file"}, false);
        Entry& inner = index.get({"outer", "middle", "inner"});
        index.putFile(inner, "file", bytes);
        index.move(inner, index.root(), "inner");
        index.move(index.get({"outer", "middle"}), inner, "middle");
        index.move(index.get({"outer"}), index.get({"inner", "middle"}), "outer");
        index.remove(inner);
        EXPECT_TRUE(pathsOf(index.root()).empty());
        EXPECT_EQ(Index::sourcePath(inner), "outer/middle/inner");
    }
    EXPECT_EQ(bytes.use_count(), 1);
}

TEST_F(AnIndex, SettledIsWhatTheSourceHolds)
{
    m_index.move(at({"motions"}), at({"other"}), "moved");
    m_index.putFile(at({"other"}), "new", staged("1"));
    m_index.remove(at({"other", "moved", "run"}));
    m_index.settle(false, false);
    EXPECT_FALSE(m_index.isModified());
    EXPECT_EQ(pathsOf(m_index.root()),
              (Paths{"other/", "other/moved/", "other/moved/walk", "other/new"}));
    EXPECT_EQ(Index::sourcePath(at({"other", "moved", "walk"})), "other/moved/walk");
    EXPECT_EQ(at({"other", "new"}).staged(), nullptr);
    EXPECT_TRUE(at({"other", "new"}).inSource);
}

TEST_F(AnIndex, KeepsAFileRewrittenWhoseStreamIsOpen)
{
    const auto file = Staging::make()->newFile("a");
    FILE* const stream = std::fopen(file->path().c_str(), "wb");
    ASSERT_NE(stream, nullptr);
    m_index.putFile(at({"other"}), "new", file);
    m_index.settle(false, false);
    EXPECT_EQ(at({"other", "new"}).staged(), file);
    EXPECT_TRUE(m_index.isModified());
    close(stream);
    m_index.settle(false, false);
    EXPECT_FALSE(m_index.isModified());
}

TEST_F(AnIndex, EmptiesTheTopWithoutRemovingIt)
{
    m_index.remove(m_index.root());
    EXPECT_TRUE(pathsOf(m_index.root()).empty());
    EXPECT_TRUE(m_index.isAlive(m_index.root()));
}

class ManyBoxes : public testing::Test
{
protected:
    ManyBoxes()
    {
        Entry& library = Index::appendLoaded(m_index->root(), "library", true, 0755);
        for (int i = 0; i < a_manyBoxes; ++i) {
            Index::appendLoaded(library, boxName(i), false, 0644).stamp.id = 1;
        }
        Index::sortLoaded(library);
        Index::sortLoaded(m_index->root());
    }
    std::unique_ptr<Index> m_index = std::make_unique<Index>();
};

TEST_F(ManyBoxes, AreMovedByTheirDirectoryAlone)
{
    Entry& library = m_index->get({"library"});
    const Entry* const box = m_index->find({"library", boxName(4711)});
    m_index->move(library, m_index->makeDirectories({"a"}), "b");
    EXPECT_EQ(m_index->touched(), (std::unordered_set<Entry*>{m_index->find({"a"})}));
    EXPECT_EQ(m_index->haunted(), (std::unordered_set<Entry*>{&m_index->root()}));
    EXPECT_EQ(m_index->find({"a", "b", boxName(4711)}), box);
    EXPECT_EQ(box->detail, nullptr);
}

TEST_F(ManyBoxes, AreRemovedByTheirDirectoryAlone)
{
    Entry& library = m_index->get({"library"});
    const Entry* const box = m_index->find({"library", boxName(4711)});
    m_index->remove(library);
    EXPECT_EQ(m_index->find({"library", boxName(4711)}), nullptr);
    EXPECT_EQ(m_index->haunted().size(), 1U);
    EXPECT_TRUE(m_index->touched().empty());
    EXPECT_EQ(library.folder->children.size(), std::size_t{a_manyBoxes});
    EXPECT_EQ(box->parent, &library);
    EXPECT_EQ(box->detail, nullptr);
}

TEST_F(ManyBoxes, ThatAreNewAreFreedInPortions)
{
    const auto bytes = staged("1");
    Entry& fresh = m_index->makeDirectories({"fresh"});
    for (int i = 0; i < a_manyBoxes; ++i) {
        m_index->putFile(fresh, boxName(i), bytes);
    }
    m_index->remove(fresh);
    EXPECT_GT(bytes.use_count(), a_manyBoxes / 2);
    m_index->sweep();
    EXPECT_EQ(bytes.use_count(), 1);
}

TEST(IndexDepth, DoesNotBoundWhatCanBeFreed)
{
    Index index;
    index.makeDirectories(ProjectPath(200'000, "a"));
    index.remove(index.get({"a"}));
    index.makeDirectories(ProjectPath(200'000, "b"));
}

#if !defined(__SANITIZE_ADDRESS__)
TEST(IndexMemory, IsLessThan400BytesAFile)
{
    const std::size_t before = ::mallinfo2().uordblks;
    Index index;
    Entry& library = Index::appendLoaded(index.root(), "library", true, 0755);
    for (int i = 0; i < a_manyBoxes; ++i) {
        Index::appendLoaded(library, "A box with a longer name " + std::to_string(i) + ".xar",
                            false, 0644);
    }
    Index::sortLoaded(library);
    const std::size_t bytes = (::mallinfo2().uordblks - before) / a_manyBoxes;
    RecordProperty("bytesPerFile", static_cast<int>(bytes));
    EXPECT_LT(bytes, 400U);
    EXPECT_GT(bytes, sizeof(Entry));
}
#endif

} // namespace pk::project::test
