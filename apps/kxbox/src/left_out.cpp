#include "left_out.hpp"

#include <QDir>
#include <QFileInfo>
#include <QStringList>

#include <algorithm>

namespace kxbox {

LeftOut::LeftOut(const pk::project::ProjectModel& model) : m_source(model.getSourcePath())
{
    const QStringList paths = model.getFileList(QString(), true, true, false);
    m_project = QSet<QString>(paths.begin(), paths.end());
}

bool LeftOut::has(const QString& path) const
{
    for (int end = 0; end >= 0;) {
        end = path.indexOf(QLatin1Char('/'), end + 1);
        const QString above = path.left(end);
        if (!m_project.contains(above)) {
            const QFileInfo place(m_source + QLatin1Char('/') + above);
            return place.exists() || place.isSymLink();
        }
    }
    return false;
}

bool LeftOut::hasAnyIn(const QString& directory) const
{
    const QStringList names =
        QDir(m_source + QLatin1Char('/') + directory)
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    return has(directory) || std::any_of(names.begin(), names.end(), [&](const QString& name) {
               return has(directory + QLatin1Char('/') + name);
           });
}

} // namespace kxbox
