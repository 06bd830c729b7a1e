// Bytes as a project's metadata: a model and a project read the same or refuse both, and what was
// read is the same after it was saved in either form.
#include "libraries.hpp"

#include <pk/project/behavior_project.hpp>
#include <pk/project/project.hpp>

#include <QJsonDocument>
#include <QJsonObject>

using namespace fuzz;
using pk::project::ArchiveFormat;
using pk::project::FormatError;

namespace {

const bool a_prepared = prepare();

/// The keys that the metadata may have, as UTF-8 has them, and some that they have hardly ever.
QStringList keysOf(const QByteArray& bytes)
{
    QStringList keys{q("title"), q("name"), q(""), q("\xc3\x9c")};
    for (const QString& key : QJsonDocument::fromJson(bytes).object().keys()) {
        keys.append(q(key.toStdString()));
    }
    return keys;
}

std::string valuesOf(const ProjectModel& model, const QStringList& keys)
{
    std::string text;
    for (const QString& key : keys) {
        text += key.toStdString() + " = " + model.getMetadata(key).toStdString() + '\n';
    }
    return text;
}

std::string valuesOf(const pk::project::Project& project, const QStringList& keys)
{
    std::string text;
    for (const QString& key : keys) {
        text += key.toStdString() + " = " + project.getMetadata(key.toStdString()) + '\n';
    }
    return text;
}

void checkRefused(const QString& path)
{
    try {
        static_cast<void>(pk::project::Project(path.toStdString()).getMetadata("title"));
    } catch (const FormatError&) {
        return;
    }
    fail("what a model refuses a project refuses");
}

QByteArray metadataFile(const QString& directory)
{
    QFile file(directory + q("/.kxproject"));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<none>");
}

void checkAccepted(ProjectModel& model, const QStringList& keys,
                   const TemporaryDirectory& directory)
{
    const QString path = directory.path("project");
    const std::string values = valuesOf(model, keys);
    requireSame(valuesOf(pk::project::Project(path.toStdString()), keys), values,
                "a project reads what a model reads");
    for (const auto format : {ArchiveFormat::Zip, ArchiveFormat::Directory}) {
        model.save(directory.path("copy"), format, true);
        requireSame(valuesOf(ProjectModel(directory.path("copy")), keys), values,
                    "saved metadata are read as they were");
    }
    const QByteArray written = metadataFile(directory.path("copy"));

    pk::project::BehaviorProject behavior((pk::project::Project(path.toStdString())));
    const std::string before = behavior.name();
    behavior.setName("x" + before);
    requireSame(behavior.name(), "x" + before, "a behaviour has the name that it was given");
    if (before.compare(0, 3, "\xef\xbb\xbf") != 0) { // which a name on its own loses
        behavior.setName(before);
        requireSame(metadataFile(path).toStdString(), written.toStdString(),
                    "a project writes the metadata as a model does");
    }
}

} // namespace

// NOLINTNEXTLINE(readability-identifier-naming): libFuzzer chose the name
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const TemporaryDirectory directory;
    const QString path = directory.path("project");
    require(QDir().mkdir(path), "a directory can be made");
    const QByteArray bytes = bytesOf(data, size);
    putLocal(path + q("/.kxproject"), bytes);
    try {
        ProjectModel model(path);
        checkAccepted(model, keysOf(bytes), directory);
    } catch (const FormatError&) {
        checkRefused(path);
    }
    return 0;
}
