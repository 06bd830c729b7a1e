#pragma once

#include "support.hpp"

#include <iterator>
#include <random>
#include <string>

namespace pk::project::test {

/// A project as plainly as it can be written down: paths of directories and of files with bytes.
class Reference
{
public:
    Tree tree;

    bool isFile(const std::string& path) const { return tree.count(path) > 0; }
    bool isDirectory(const std::string& path) const
    {
        return path.empty() || tree.count(path + "/") > 0;
    }
    void makeDirectory(const std::string& path)
    {
        for (std::size_t at = path.find('/'); at != std::string::npos;
             at = path.find('/', at + 1)) {
            tree[path.substr(0, at) + "/"] = "";
        }
        if (!path.empty()) {
            tree[path + "/"] = "";
        }
    }
    void makeParent(const std::string& path)
    {
        const std::size_t slash = path.rfind('/');
        makeDirectory(slash == std::string::npos ? "" : path.substr(0, slash));
    }
    /// Whether a file is where a directory above `path` would have to be.
    bool isBlocked(const std::string& path) const
    {
        for (std::size_t at = path.find('/'); at != std::string::npos;
             at = path.find('/', at + 1)) {
            if (isFile(path.substr(0, at))) {
                return true;
            }
        }
        return false;
    }
    Tree below(const std::string& path) const
    {
        Tree result;
        if (isFile(path)) {
            result[""] = tree.at(path);
        }
        if (path.empty()) {
            result["/"] = "";
        }
        const std::string prefix = path.empty() ? "" : path + "/";
        for (const auto& entry : tree) {
            if (entry.first.compare(0, prefix.size(), prefix) == 0) {
                result["/" + entry.first.substr(prefix.size())] = entry.second;
            }
        }
        return result;
    }
    void remove(const std::string& path)
    {
        tree.erase(path);
        const std::string prefix = path.empty() ? "" : path + "/";
        for (auto it = tree.begin(); it != tree.end();) {
            it = it->first.compare(0, prefix.size(), prefix) == 0 ? tree.erase(it) : std::next(it);
        }
    }
    void put(const std::string& path, const Tree& content)
    {
        for (const auto& entry : content) {
            const std::string name =
                path.empty() && !entry.first.empty() ? entry.first.substr(1) : path + entry.first;
            if (!name.empty()) {
                tree[name] = entry.second;
            }
        }
    }
};

/// Edits a model and a reference at random in the same way.
class Editor
{
public:
    Editor(unsigned seed, ProjectModel& model) : m_random(seed), m_model(&model) {}

    void setModel(ProjectModel& model) { m_model = &model; }
    Reference& reference() { return m_reference; }

    void edit()
    {
        switch (pick(9)) {
        case 0:
        case 1:
            write();
            break;
        case 2:
            makeDirectory();
            break;
        case 3:
            remove();
            break;
        case 4:
        case 5:
            move();
            break;
        case 6:
            import();
            break;
        case 7:
            importFromOther();
            break;
        default:
            rewriteSame();
        }
    }

    void check() const { EXPECT_EQ(treeOf(*m_model), m_reference.tree); }

private:
    unsigned pick(unsigned count) { return static_cast<unsigned>(m_random() % count); }

    std::string anyPath()
    {
        static const char* const names[] = {"a", "b", "c", "d e"};
        std::string path = names[pick(4)];
        for (unsigned depth = pick(3); depth > 0; --depth) {
            path += std::string("/") + names[pick(4)];
        }
        return path;
    }

    std::string anyExisting()
    {
        if (m_reference.tree.empty()) {
            return {};
        }
        auto it = std::next(m_reference.tree.begin(),
                            pick(static_cast<unsigned>(m_reference.tree.size())));
        return it->first.back() == '/' ? it->first.substr(0, it->first.size() - 1) : it->first;
    }

    void write()
    {
        const std::string path = anyPath();
        const std::string bytes = std::to_string(pick(4));
        if (m_reference.isDirectory(path) || m_reference.isBlocked(path)) {
            EXPECT_THROW(m_model->writeFile(q(path), QByteArray::fromStdString(bytes)),
                         AlreadyExists);
            return;
        }
        const std::size_t slash = path.rfind('/');
        const std::string above = slash == std::string::npos ? "" : path.substr(0, slash);
        if (pick(2) == 0 && m_reference.isDirectory(above)) {
            putThroughStream(*m_model, path.c_str(), bytes);
        } else {
            m_model->writeFile(q(path), QByteArray::fromStdString(bytes));
        }
        m_reference.makeParent(path);
        m_reference.tree[path] = bytes;
    }

    void rewriteSame()
    {
        const std::string path = anyExisting();
        if (m_reference.isFile(path)) {
            const std::string bytes = m_reference.tree[path];
            m_model->remove(q(path));
            m_model->writeFile(q(path), QByteArray::fromStdString(bytes));
        }
    }

    void makeDirectory()
    {
        const std::string path = anyPath();
        if (m_reference.isFile(path) || m_reference.isBlocked(path)) {
            EXPECT_THROW(m_model->mkdir(q(path), true), AlreadyExists);
            return;
        }
        m_model->mkdir(q(path), true);
        m_reference.makeDirectory(path);
    }

    void remove()
    {
        const std::string path = pick(12) == 0 ? std::string() : anyExisting();
        m_model->remove(q(path));
        m_reference.remove(path);
    }

    void move()
    {
        const std::string from = anyExisting();
        const std::string to = anyPath();
        const bool inside = to.compare(0, from.size() + 1, from + "/") == 0 ||
                            from.compare(0, to.size() + 1, to + "/") == 0;
        const bool exists = m_reference.isFile(to) || m_reference.isDirectory(to);
        const bool overwrite = pick(2) == 0;
        if (from.empty() || from == to) {
            return;
        }
        if (inside || m_reference.isBlocked(to) || (exists && !overwrite)) {
            EXPECT_THROW(m_model->move(q(from), q(to), overwrite), Error);
            return;
        }
        m_model->move(q(from), q(to), overwrite);
        const Tree content = m_reference.below(from);
        m_reference.remove(from);
        m_reference.remove(to);
        m_reference.makeParent(to);
        m_reference.put(to, content);
    }

    bool canMerge(const Tree& content, const std::string& to) const
    {
        for (const auto& entry : content) {
            std::string name =
                to.empty() && !entry.first.empty() ? entry.first.substr(1) : to + entry.first;
            const bool isDirectory = !name.empty() && name.back() == '/';
            if (isDirectory) {
                name.pop_back();
            }
            if (name.empty()) {
                continue;
            }
            if (m_reference.isBlocked(name) ||
                (isDirectory ? m_reference.isFile(name) : m_reference.isDirectory(name))) {
                return false;
            }
        }
        return true;
    }

    void importFrom(const ProjectModel& source, const Tree& content, const std::string& from)
    {
        const std::string to = pick(8) == 0 ? std::string() : anyPath();
        if (to.empty() && content.count("") > 0) {
            return;
        }
        if (!canMerge(content, to)) {
            EXPECT_THROW(m_model->importFile(source, q(from), q(to), true), Error);
            return;
        }
        m_model->importFile(source, q(from), q(to), true);
        m_reference.makeParent(to);
        m_reference.put(to, content);
    }

    void import()
    {
        const std::string from = anyExisting();
        if (m_reference.tree.size() < 200) {
            importFrom(*m_model, m_reference.below(from), from);
        }
    }

    void importFromOther()
    {
        const std::string from = anyExisting();
        ProjectModel other;
        other.importFile(*m_model, q(from), q("x"), true);
        const Tree content = m_reference.below(from);
        if (m_reference.tree.size() < 200) {
            importFrom(other, content, "x");
        }
    }

    std::mt19937 m_random;
    ProjectModel* m_model;
    Reference m_reference;
};

} // namespace pk::project::test
