#include "left_out.hpp"

#include <QFileInfo>
#include <QStringList>

#include <algorithm>
#include <filesystem>
#include <system_error>

namespace kxbox {

LeftOut::LeftOut(const pk::project::ProjectModel& model)
    : m_model(model), m_source(model.getSourcePath())
{
}

bool LeftOut::isInProject(const QString& path) const
{
    const int slash = path.lastIndexOf(QLatin1Char('/'));
    const QString directory = path.left(std::max(slash, 0));
    auto names = m_names.find(directory);
    if (names == m_names.end()) {
        const QStringList listed = m_model.getFileList(directory, true, false, false);
        names = m_names.insert(directory, QSet<QString>(listed.begin(), listed.end()));
    }
    return names->contains(path.mid(slash + 1));
}

bool LeftOut::has(const QString& path) const
{
    for (int end = 0; end >= 0;) {
        end = path.indexOf(QLatin1Char('/'), end + 1);
        const QString above = path.left(end);
        if (!isInProject(above)) {
            const QFileInfo place(m_source + QLatin1Char('/') + above);
            return place.exists() || place.isSymLink();
        }
    }
    return false;
}

bool LeftOut::hasBoxAt(const QString& path) const
{
    return has(path + QStringLiteral("/box.bhx")) || has(path + QStringLiteral("/behavior.bhx"));
}

bool LeftOut::hasAnyIn(const QString& directory) const
{
    namespace fs = std::filesystem;
    if (has(directory)) {
        return true;
    }
    const fs::path source(m_source.toStdString());
    std::error_code error;
    const fs::recursive_directory_iterator all(source / directory.toStdString(), error);
    return std::any_of(begin(all), end(all), [&](const fs::directory_entry& entry) {
        const std::string path = entry.path().lexically_relative(source).string();
        const QString text = QString::fromStdString(path);
        return text.toStdString() != path || has(text); // which is no UTF-8
    });
}

} // namespace kxbox
