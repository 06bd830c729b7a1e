#include "behavior_export.hpp"
#include "file_names.hpp"
#include "run_then.hpp"
#include "translation_memo.hpp"

#include <kr/localization/context_patchers.hpp>
#include <kr/localization/translators.hpp>
#include <kxboxlibrary/box_constants.hpp>
#include <kxboxlibrary/box_data.hpp>
#include <kxboxlibrary/box_library.hpp>
#include <kxboxlibrary/box_library_node.hpp>
#include <kxboxlibrary/tree_deleter.hpp>
#include <pk/log.hpp>
#include <pk/path.hpp>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSet>

#include <algorithm>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace KX {

using pk::project::ArchiveFormat;
using pk::project::ProjectModel;

namespace {

const pk::log::Category a_category = pk::log::addCategory("BoxLibrary");

/// Larger ones are refused by KR::Localization::TS, but have to be read for that.
constexpr qint64 a_largestTranslationFile = qint64{128} << 20U;

QString translationsDirectory()
{
    return QString::fromLatin1(BoxConstants::a_boxLibraryTranslations);
}

QString translationFile(const QString& language)
{
    const std::string name = file_names::escape(language.toStdString());
    return QStringLiteral("%1/translation_%2.ts")
        .arg(translationsDirectory(), QString::fromStdString(name));
}

/// The paths of what is directly in the directory of translations.
QStringList inTranslations(const ProjectModel& model, bool directoriesOnly)
{
    QStringList paths;
    const QString directory = translationsDirectory();
    for (const QString& name : model.getFileList(directory, true, false, directoriesOnly)) {
        paths.append(directory + QLatin1Char('/') + name);
    }
    return paths;
}

/// Removes what no translation is read from and where a file or its directory may have to be.
void removeObstacles(ProjectModel& model)
{
    if (model.hasFile(translationsDirectory())) {
        model.remove(translationsDirectory());
    }
    for (const QString& path : inTranslations(model, true)) {
        model.remove(path);
    }
}

/// Removes all that is in the directory of translations but some files; without these the
/// directory, too.
void removeTranslationFilesBut(ProjectModel& model, const QSet<QString>& kept)
{
    const QStringList paths = inTranslations(model, false);
    const bool keepsAny = std::any_of(paths.cbegin(), paths.cend(),
                                      [&](const QString& path) { return kept.contains(path); });
    if (!keepsAny) {
        try {
            model.remove(translationsDirectory());
        } catch (const pk::project::PathNotFound&) {
            // There are no translations yet.
        }
        return;
    }
    for (const QString& path : paths) {
        if (!kept.contains(path)) {
            model.remove(path);
        }
    }
}

/// Opens a local file for reading, if it is one: nothing that somebody put in its place meanwhile,
/// or in that of its directory, may lead elsewhere or make the program wait. Links lead to files
/// where they are part of an installation.
bool openRegular(QFile& file, bool mayBeLink)
{
    const int flags = O_CLOEXEC | (mayBeLink ? 0 : O_NOFOLLOW);
    const QFileInfo place(file.fileName());
    const int directory =
        ::open(QFile::encodeName(place.path()).constData(), O_PATH | O_DIRECTORY | flags);
    const int fd = ::openat(directory, QFile::encodeName(place.fileName()).constData(),
                            O_RDONLY | O_NONBLOCK | flags);
    ::close(directory);
    struct stat info = {};
    if (fd >= 0 && ::fstat(fd, &info) == 0 && S_ISREG(info.st_mode) &&
        file.open(fd, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle)) {
        return true;
    }
    if (fd >= 0) {
        ::close(fd);
    }
    return false;
}

QString escapedName(const QString& name)
{
    return QString::fromStdString(file_names::escape(name.toStdString()));
}

} // namespace

ArchiveFormat libraryFormatToProjectFormat(BoxLibrary::LibraryFormat format)
{
    switch (format) {
    case BoxLibrary::Directory:
        return ArchiveFormat::Directory;
    case BoxLibrary::Archive:
        return ArchiveFormat::Zip;
    }
    return ArchiveFormat::Unspecified;
}

BoxLibrary::BoxLibrary(ProjectModel model, bool readOnly, QObject* parent)
    : QObject(parent), m_model(std::move(model)), m_memo(std::make_unique<TranslationMemo>())
{
    std::unique_ptr<BoxLibraryNode, TreeDeleter> root(new BoxLibraryNode(this));
    m_readOnly = readOnly;
    m_dirty = false; // loading made it true
    connect(root.get(), &BoxLibraryNode::dataChanged, this, &BoxLibrary::dataChanged);
    connect(this, &BoxLibrary::readOnlyChanged, this, &BoxLibrary::updateTranslationFilesList,
            Qt::DirectConnection);
    connect(this, &BoxLibrary::translationFilesListChanged, this, &BoxLibrary::updateTranslators,
            Qt::DirectConnection);
    updateTranslationFilesList();
    m_root = root.release();
}

BoxLibrary::BoxLibrary(const QString& title, bool readOnly, QObject* parent)
    : BoxLibrary(ProjectModel(), readOnly, parent)
{
    m_model.setMetadata(QStringLiteral("Type"),
                        QString::fromLatin1(BoxConstants::a_boxLibraryProjectType));
    m_model.setMetadata(QStringLiteral("Version"),
                        QString::fromLatin1(BoxConstants::a_boxLibraryProjectVersion));
    m_model.setMetadata(QStringLiteral("title"), title);
}

BoxLibrary::~BoxLibrary()
{
    delete m_root;
}

QString BoxLibrary::title() const
{
    const QString title = m_model.getMetadata(QStringLiteral("title"));
    return title.isEmpty() ? makeTitleFromPath(path()) : title;
}

void BoxLibrary::setTitle(const QString& title)
{
    if (title != this->title()) {
        m_model.setMetadata(QStringLiteral("title"), title);
        Q_EMIT titleChanged(title);
        setDirty(true);
    }
}

QString BoxLibrary::makeTitleFromPath(const QString& path)
{
    const QString name = QFileInfo(path).fileName();
    const bool hasSuffix = name.endsWith(QLatin1String(".bxl"), Qt::CaseInsensitive) ||
                           name.endsWith(QLatin1String(".kbl"), Qt::CaseInsensitive);
    return hasSuffix ? name.chopped(4) : name;
}

QString BoxLibrary::path() const
{
    return m_model.getSourcePath();
}

void BoxLibrary::setDirty(bool value)
{
    if (value != m_dirty) {
        m_dirty = value;
        Q_EMIT dirtyChanged(value);
    }
}

void BoxLibrary::setReadOnly(bool value)
{
    if (value != m_readOnly) {
        m_readOnly = value;
        Q_EMIT readOnlyChanged(value);
    }
}

BoxLibraryNode* BoxLibrary::node(const QList<int>& indices) const
{
    BoxLibraryNode* node = m_root;
    for (const int index : indices) {
        node = node != nullptr ? node->child(index) : nullptr;
    }
    return node;
}

void BoxLibrary::save()
{
    m_model.save(QString(), ArchiveFormat::Source, true);
    setDirty(false);
}

void BoxLibrary::saveTo(const QString& path, LibraryFormat format)
{
    setTitle(makeTitleFromPath(path));
    m_model.save(path, libraryFormatToProjectFormat(format), true);
    setReadOnly(false);
    setDirty(false);
    updateTranslationFilesList();
}

// Translations

void BoxLibrary::updateTranslationFilesList()
{
    QStringList files;
    if (m_readOnly) {
        const std::string name = QFileInfo(path()).fileName().toStdString();
        const std::string pattern = "libraries/box/" + name + "/translations/*.ts";
        for (const std::string& file : pk::path::listData("kinestra", pattern, false)) {
            files.append(QString::fromStdString(file));
        }
    } else {
        const QString directory = translationsDirectory();
        for (const QString& name : m_model.getFileList(directory, false, false, false)) {
            const QString path = directory + QLatin1Char('/') + name;
            // Looked at first, because an archive's file is unpacked to have a local path.
            if (m_model.getFileSize(path) > a_largestTranslationFile) {
                warnOfFile("translation file is too large: " + path.toStdString(), __func__,
                           __LINE__);
                continue;
            }
            try {
                files.append(m_model.getFileLocalPath(path));
            } catch (const pk::project::FormatError& error) {
                warnOfFile("could not open translation file: " + path.toStdString() +
                               ", reason: " + error.what(),
                           __func__, __LINE__);
            }
        }
    }
    setTranslationFilesList(files);
}

void BoxLibrary::setTranslationFilesList(const QStringList& files)
{
    if (files != m_translationFiles) {
        m_translationFiles = files;
        Q_EMIT translationFilesListChanged();
    }
}

void BoxLibrary::warnOfFile(const std::string& message, const char* function, int line) const
{
    pk::log::log(pk::log::Warning, a_category, title().toStdString() + "- " + message,
                 "gui/lib/desktop/kxboxlibrary/src/box_library", function, line);
}

void BoxLibrary::updateTranslators()
{
    Translators translators;
    for (const QString& path : std::as_const(m_translationFiles)) {
        QFile file(path);
        if (!openRegular(file, m_readOnly)) {
            warnOfFile("could not open translation file: " + path.toStdString(), __func__,
                       __LINE__);
            continue;
        }
        if (file.size() > a_largestTranslationFile) {
            warnOfFile("translation file is too large: " + path.toStdString(), __func__, __LINE__);
            continue;
        }
        const auto translator = m_memo->read(file.readAll());
        const QString& language = translator.languageCode();
        if (language.isEmpty()) {
            warnOfFile("No language code found in " + path.toStdString() + " translation file",
                       __func__, __LINE__);
        } else if (!translators.contains(language)) {
            translators.insert(language, translator);
        }
    }
    m_translators = translators;
}

// The old files are removed when the new ones are there: a program that dies in between loses no
// language of what can be recovered.
void BoxLibrary::setTranslations(const Translators& translators)
{
    const Translators before = m_translators;
    const QStringList pathsBefore = inTranslations(m_model, false);
    const QMap<QString, QByteArray> files = m_memo->write(translators);
    QSet<QString> paths;
    try {
        removeObstacles(m_model);
        for (auto it = files.cbegin(); it != files.cend(); ++it) {
            paths.insert(translationFile(it.key()));
            m_model.writeFile(translationFile(it.key()), it.value());
        }
    } catch (...) {
        if (!m_readOnly) { // else `before` came from elsewhere
            setTranslationFilesList({});
            putBackTranslations(before, pathsBefore);
        }
        throw;
    }
    removeTranslationFilesBut(m_model, paths);
    if (!m_readOnly) {
        setTranslationFilesList({}); // every file is another one now
    }
    updateTranslationFilesList();
}

void BoxLibrary::putBackTranslations(const Translators& translators, const QStringList& pathsBefore)
{
    QSet<QString> kept;
    const QMap<QString, QByteArray> files = m_memo->write(translators);
    for (auto it = files.cbegin(); it != files.cend(); ++it) {
        const QString path = translationFile(it.key());
        kept.insert(path);
        try {
            if (m_model.readFile(path) != it.value()) {
                m_model.writeFile(path, it.value());
            }
        } catch (const pk::project::InvalidPath&) {
            // The failure to report is the one before, and the other files are to come back.
        } catch (const pk::project::Error&) {
            // As on a full disk: its file from before may have another name.
            kept.unite({pathsBefore.cbegin(), pathsBefore.cend()});
        }
    }
    removeTranslationFilesBut(m_model, kept);
    updateTranslationFilesList();
}

QString BoxLibrary::translationContext() const
{
    return QString::fromLatin1(BoxConstants::a_boxLibraryContext) + QLatin1Char(':');
}

QString BoxLibrary::subtreeContext(const QString& path) const
{
    return translationContext() + (path.isEmpty() ? path : QLatin1Char('/') + path);
}

void BoxLibrary::insertMessages(const QString& path, const Translators& translators,
                                const QMap<QString, QString>& names)
{
    QMap<QString, QString> fileNames;
    for (auto it = names.cbegin(); it != names.cend(); ++it) {
        fileNames.insert(escapedName(it.key()), escapedName(it.value()));
    }
    const KR::Localization::ContextBoxNamePatcher patcher(subtreeContext(path), fileNames);
    Translators merged = m_translators;
    KR::Localization::insertMessages(merged, translators, patcher);
    setTranslations(merged);
}

void BoxLibrary::removeTranslations(const QString& context)
{
    Translators remaining = m_translators;
    KR::Localization::removeMessages(remaining, KR::Localization::ContextRecursiveFinder(context));
    setTranslations(remaining);
}

void BoxLibrary::changeContextes(const QMap<QString, QString>& contexts)
{
    Translators rewritten = m_translators;
    const KR::Localization::ContextMatchPatcher patcher(contexts);
    KR::Localization::rewriteContexts(rewritten, patcher);
    setTranslations(rewritten);
}

void BoxLibrary::moveMessages(const QMap<QString, QString>& contexts)
{
    QMap<QString, QString> places;
    for (const QString& context : contexts) {
        places.insert(context, context);
    }
    const KR::Localization::ContextMatchPatcher isLeft(places);
    Translators moved = m_translators;
    KR::Localization::removeMessages(moved, [&isLeft](QString context) { return isLeft(context); });
    const KR::Localization::ContextMatchPatcher patcher(contexts);
    KR::Localization::rewriteContexts(moved, patcher);
    setTranslations(moved);
}

// Editing and export

void BoxLibrary::insertChildren(BoxLibraryNode* parent, int index, QList<BoxLibraryNode*> nodes,
                                const Translators& translators)
{
    if (parent == nullptr || nodes.isEmpty()) {
        return;
    }
    QMap<QString, QString> names;
    int position = qBound(0, index, parent->children().size());
    const auto insertAll = [&] {
        for (BoxLibraryNode* const node : std::as_const(nodes)) {
            const std::string name = node != nullptr ? node->name() : std::string();
            const BoxLibraryNode* const inserted = parent->insertChild(position, node);
            if (inserted != nullptr) {
                names.insert(QString::fromStdString(name),
                             QString::fromStdString(inserted->name()));
                ++position;
            }
        }
    };
    runThen(insertAll, [&] {
        if (!names.isEmpty()) {
            insertMessages(parent->path(), translators, names);
        }
    });
}

void BoxLibrary::exportBehaviors(const QString& destination)
{
    const QDir directory(destination);
    if (!directory.exists()) {
        throw pk::project::PathNotFound(directory.canonicalPath().toStdString());
    }
    QStringList paths;
    xFindBehaviors(m_root, paths);
    for (const QString& path : std::as_const(paths)) {
        exportBehavior(m_model, path, directory);
    }
}

void BoxLibrary::xFindBehaviors(BoxLibraryNode* node, QStringList& paths)
{
    if (node == nullptr) {
        return;
    }
    if (const auto data = node->boxData()) {
        if (data->m_behavior) {
            paths.append(node->path());
        }
        return;
    }
    for (BoxLibraryNode* const child : node->children()) {
        xFindBehaviors(child, paths);
    }
}

} // namespace KX
