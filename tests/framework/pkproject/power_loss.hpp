#pragma once

#include "disk.hpp"
#include "project_path.hpp"
#include "support.hpp"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <map>
#include <random>
#include <stdexcept>
#include <string>
#include <unistd.h>
#include <vector>

namespace pk::project::test {

/// Does everything on the real disk, remembers it, and shows what a power failure could leave.
///
/// A change to a directory is on the disk for certain when that directory was synced after it; one
/// to a file's bytes when the file was; one to a mode when the file or the directory above it was.
/// A rename changes both of its directories or neither. Everything else may have got there or not,
/// each change for itself and in no order, and bytes may be torn, be zeros or be others.
///
/// What happens elsewhere than below `top` is done, and neither remembered nor failed.
class PowerLossDisk : public Disk
{
public:
    /// What is below `top` now is on the disk.
    explicit PowerLossDisk(const QString& top) : m_top(top.toStdString())
    {
        m_nodes.emplace_back();
        m_nodes[0].isDirectory = true;
        load(0, m_top);
        m_start = m_nodes;
        Disk::replace(this);
    }
    ~PowerLossDisk() override { unplug(); }
    PowerLossDisk(const PowerLossDisk&) = delete;
    PowerLossDisk& operator=(const PowerLossDisk&) = delete;
    PowerLossDisk(PowerLossDisk&&) = delete;
    PowerLossDisk& operator=(PowerLossDisk&&) = delete;

    /// From now on the usual disk is used.
    static void unplug() { Disk::replace(nullptr); }

    /// Change number `number` fails, from 0.
    void failAt(int number) { m_failing = number; }

    int count() const { return static_cast<int>(m_changes.size()); }

    /// Writes to the empty directory `to` what may be below the top when the power fails after
    /// `count` changes. Unsynced changes survive with `chance` in a hundred. Gives the changes,
    /// each with what became of it.
    std::string materialise(const QString& to, int count, unsigned chance,
                            std::mt19937& random) const
    {
        std::vector<Node> nodes = m_start;
        nodes.resize(m_nodes.size());
        for (std::size_t id = m_start.size(); id < m_nodes.size(); ++id) {
            nodes[id].isDirectory = m_nodes[id].isDirectory;
            nodes[id].mode = m_nodes[id].firstMode;
            nodes[id].time = m_nodes[id].time;
        }
        const auto end = static_cast<std::size_t>(count);
        std::string history;
        for (std::size_t i = 0; i < end; ++i) {
            const bool certain = isCertain(i, end);
            const bool survives =
                certain || (random() % 100 < chance && isPossible(m_changes[i], nodes));
            history += std::string(certain    ? "  synced "
                                   : survives ? "  survived "
                                              : "  lost ") +
                       m_changes[i].text + "\n";
            if (survives) {
                apply(m_changes[i], nodes, certain,
                      certain ? 0U : static_cast<unsigned>(random() % 4));
            }
        }
        writeTree(nodes, 0, to.toStdString(), 0);
        return history;
    }

    Fd create(const std::string& path, mode_t mode) override
    {
        step(path);
        Fd file = Disk::create(path, mode);
        addNew(path, false, mode);
        return file;
    }
    void write(const Fd& file, const char* bytes, std::size_t size) override
    {
        step(file.path());
        const off_t offset = ::lseek(file.get(), 0, SEEK_CUR);
        Disk::write(file, bytes, size);
        addBytes(file, offset, std::string(bytes, size));
    }
    void copy(const Fd& from, const Fd& to) override
    {
        step(to.path());
        const off_t offset = ::lseek(to.get(), 0, SEEK_CUR);
        const off_t start = ::lseek(from.get(), 0, SEEK_CUR);
        Usual().copy(from, to);
        EXPECT_EQ(::lseek(from.get(), start, SEEK_SET), start);
        addBytes(to, offset, readAll(from).toStdString());
    }
    void sync(const Fd& file) override
    {
        step(file.path());
        if (isMine(file.path())) {
            add(Change(Kind::Sync, "sync " + below(file.path()), find(file.path())));
        }
    }
    void syncFileSystem(const std::string& path) override
    {
        step(path);
        add(Change(Kind::SyncAll, "syncfs"));
    }
    void mkdir(const std::string& path, mode_t mode) override
    {
        step(path);
        Disk::mkdir(path, mode);
        addNew(path, true, mode);
    }
    void chmod(const std::string& path, mode_t mode) override
    {
        step(path);
        Disk::chmod(path, mode);
        if (!isMine(path)) {
            return;
        }
        Change change(Kind::Mode, "chmod " + below(path), find(path));
        change.from = find(directoryOf(path));
        change.mode = mode;
        add(change);
    }
    void setTime(const std::string& path, std::int64_t time) override
    {
        step(path);
        Disk::setTime(path, time);
    }
    void rename(const std::string& from, const std::string& to) override
    {
        step(to);
        Disk::rename(from, to);
        addMove(Kind::Move, from, to);
    }
    void renameNew(const std::string& from, const std::string& to) override
    {
        step(to);
        Disk::renameNew(from, to);
        addMove(Kind::Move, from, to);
    }
    void exchange(const std::string& a, const std::string& b) override
    {
        step(b);
        Disk::exchange(a, b);
        addMove(Kind::Exchange, a, b);
    }
    void link(const std::string& from, const std::string& to) override
    {
        step(to);
        Disk::link(from, to);
        if (!isMine(to)) {
            return;
        }
        Change change(Kind::Link, "link " + below(from) + " -> " + below(to), find(from));
        change.to = find(directoryOf(to));
        change.toName = nameOf(to);
        add(change);
    }
    void unlink(const std::string& path) override
    {
        step(path);
        Disk::unlink(path);
        addUnlink(path);
    }
    void rmdir(const std::string& path) override
    {
        step(path);
        Disk::rmdir(path);
        addUnlink(path);
    }

private:
    // Copies without coming back to this object's write().
    class Usual : public Disk
    {
    };
    using Id = std::size_t;
    struct Node
    {
        bool isDirectory = false;
        mode_t mode = 0;
        mode_t firstMode = 0;
        std::int64_t time = 0; ///< of the modification, when it was made or loaded
        std::string bytes;
        std::map<std::string, Id> entries;
    };
    enum class Kind
    {
        Link,
        Unlink,
        Move,
        Exchange,
        Bytes,
        Mode,
        Sync,
        SyncAll
    };
    static constexpr Id a_none = static_cast<Id>(-1);
    struct Change
    {
        Change(Kind k, std::string t, Id n = a_none) : kind(k), node(n), text(std::move(t)) {}
        Kind kind;
        Id node = a_none;
        Id from = a_none; ///< directory, for a mode the one above
        Id to = a_none;
        std::string fromName;
        std::string toName;
        std::string bytes;
        std::size_t offset = 0;
        mode_t mode = 0;
        std::string text;
    };

    static std::string directoryOf(const std::string& path)
    {
        return path.substr(0, path.rfind('/'));
    }
    static std::string nameOf(const std::string& path) { return path.substr(path.rfind('/') + 1); }

    std::string below(const std::string& path) const
    {
        return path.size() > m_top.size() ? path.substr(m_top.size() + 1) : std::string(".");
    }

    bool isMine(const std::string& path) const
    {
        return path == m_top || path.compare(0, m_top.size() + 1, m_top + "/") == 0;
    }

    void step(const std::string& path)
    {
        if (count() == m_failing && isMine(path)) {
            m_failing = -1;
            errno = EIO;
            throwErrno(path);
        }
    }

    void load(Id id, const std::string& path)
    {
        const auto info = statOf(path);
        m_nodes[id].mode = info->st_mode & 0777;
        m_nodes[id].time = modificationTime(*info);
        if (!S_ISDIR(info->st_mode)) {
            m_nodes[id].bytes = readAll(openPath(path, O_RDONLY)).toStdString();
            return;
        }
        m_nodes[id].isDirectory = true;
        for (const std::string& name : namesIn(openPath(path, O_RDONLY | O_DIRECTORY))) {
            const Id child = m_nodes.size();
            m_nodes.emplace_back();
            m_nodes[id].entries[name] = child;
            load(child, joinPath(path, name));
        }
    }

    Id find(const std::string& path) const
    {
        Id at = 0;
        std::size_t begin = m_top.size() + 1;
        while (begin < path.size()) {
            const std::size_t end = std::min(path.find('/', begin), path.size());
            const auto it = m_nodes[at].entries.find(path.substr(begin, end - begin));
            if (it == m_nodes[at].entries.end()) {
                ADD_FAILURE() << path << " was not made on this disk";
                return 0;
            }
            at = it->second;
            begin = end + 1;
        }
        return at;
    }

    void add(const Change& change)
    {
        apply(change, m_nodes, true, 0);
        m_changes.push_back(change);
    }
    void addNew(const std::string& path, bool isDirectory, mode_t mode)
    {
        if (!isMine(path)) {
            return;
        }
        Change change(Kind::Link, (isDirectory ? "mkdir " : "create ") + below(path),
                      m_nodes.size());
        change.to = find(directoryOf(path));
        change.toName = nameOf(path);
        m_nodes.emplace_back();
        m_nodes.back().isDirectory = isDirectory;
        m_nodes.back().mode = m_nodes.back().firstMode = mode;
        m_nodes.back().time = modificationTime(*statOf(path));
        add(change);
    }
    void addBytes(const Fd& file, off_t offset, const std::string& bytes)
    {
        if (!isMine(file.path())) {
            return;
        }
        Change change(Kind::Bytes, "write " + below(file.path()), find(file.path()));
        m_nodes[change.node].time = modificationTime(statOf(file));
        change.offset = static_cast<std::size_t>(offset);
        change.bytes = bytes;
        add(change);
    }
    void addMove(Kind kind, const std::string& from, const std::string& to)
    {
        if (!isMine(to)) {
            return;
        }
        Change change(
            kind, (kind == Kind::Move ? "rename " : "exchange ") + below(from) + " -> " + below(to),
            find(from));
        change.from = find(directoryOf(from));
        change.fromName = nameOf(from);
        change.to = find(directoryOf(to));
        change.toName = nameOf(to);
        add(change);
    }
    void addUnlink(const std::string& path)
    {
        if (!isMine(path)) {
            return;
        }
        Change change(Kind::Unlink, "remove " + below(path), find(path));
        change.from = find(directoryOf(path));
        change.fromName = nameOf(path);
        add(change);
    }

    bool isCertain(std::size_t number, std::size_t end) const
    {
        const Change& change = m_changes[number];
        if (change.kind == Kind::Sync || change.kind == Kind::SyncAll) {
            return true;
        }
        const bool ofFile = change.kind == Kind::Bytes || change.kind == Kind::Mode;
        for (std::size_t i = number + 1; i < end; ++i) {
            const Change& later = m_changes[i];
            if (later.kind == Kind::SyncAll ||
                (later.kind == Kind::Sync &&
                 ((ofFile && later.node == change.node) || later.node == change.from ||
                  later.node == change.to))) {
                return true;
            }
        }
        return false;
    }

    // What an unsynced change makes must be found somewhere: with the directory that it is in, it
    // is lost itself.
    static bool isPossible(const Change& change, const std::vector<Node>& nodes)
    {
        return change.to == a_none || isBelow(0, change.to, nodes);
    }
    static bool isBelow(Id top, Id node, const std::vector<Node>& nodes)
    {
        const auto& entries = nodes[top].entries;
        return top == node || std::any_of(entries.begin(), entries.end(), [&](const auto& entry) {
                   return isBelow(entry.second, node, nodes);
               });
    }

    // A change whose operands are not there, because an earlier one is lost, is lost with it;
    // unless it is certain.
    static void apply(const Change& change, std::vector<Node>& nodes, bool certain, unsigned tear)
    {
        const auto holds = [&](Id directory, const std::string& name) {
            const auto it = nodes[directory].entries.find(name);
            return it != nodes[directory].entries.end() && it->second == change.node;
        };
        switch (change.kind) {
        case Kind::Link:
            nodes[change.to].entries[change.toName] = change.node;
            break;
        case Kind::Unlink:
            if (holds(change.from, change.fromName)) {
                nodes[change.from].entries.erase(change.fromName);
            }
            break;
        case Kind::Move:
            if (holds(change.from, change.fromName) || certain) {
                if (holds(change.from, change.fromName)) {
                    nodes[change.from].entries.erase(change.fromName);
                }
                nodes[change.to].entries[change.toName] = change.node;
            }
            break;
        case Kind::Exchange:
            if (holds(change.from, change.fromName) &&
                nodes[change.to].entries.count(change.toName) > 0) {
                std::swap(nodes[change.from].entries[change.fromName],
                          nodes[change.to].entries[change.toName]);
            }
            break;
        case Kind::Bytes:
            applyBytes(change, nodes[change.node].bytes, tear);
            break;
        case Kind::Mode:
            nodes[change.node].mode = change.mode;
            break;
        case Kind::Sync:
        case Kind::SyncAll:
            break;
        }
    }

    static void applyBytes(const Change& change, std::string& bytes, unsigned tear)
    {
        std::string part = change.bytes;
        if (tear == 1) {
            part.resize(part.size() / 2);
        } else if (tear == 2) {
            part.assign(part.size(), '\0');
        } else if (tear == 3) {
            part.assign(part.size(), '#');
        }
        bytes.resize(std::max(bytes.size(), change.offset + part.size()));
        bytes.replace(change.offset, part.size(), part);
    }

    static void writeTree(const std::vector<Node>& nodes, Id id, const std::string& path, int depth)
    {
        if (depth > 64) {
            throw std::logic_error("a directory that holds itself");
        }
        for (const auto& entry : nodes[id].entries) {
            const Node& node = nodes[entry.second];
            const std::string child = path + "/" + entry.first;
            if (node.isDirectory) {
                ASSERT_EQ(::mkdir(child.c_str(), 0700), 0) << child;
                writeTree(nodes, entry.second, child, depth + 1);
            } else {
                putLocal(QString::fromStdString(child), QByteArray::fromStdString(node.bytes));
            }
            Usual().setTime(child, node.time);
            ASSERT_EQ(::chmod(child.c_str(), node.mode), 0) << child;
        }
    }

    std::string m_top;
    std::vector<Node> m_start;
    std::vector<Node> m_nodes;
    std::vector<Change> m_changes;
    int m_failing = -1;
};

} // namespace pk::project::test
