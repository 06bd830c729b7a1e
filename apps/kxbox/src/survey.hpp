#pragma once

#include "progress.hpp"

#include <kr/localization/translator.hpp>
#include <pk/project/project_model.hpp>

#include <QString>
#include <QStringList>

#include <optional>
#include <string>
#include <vector>

/// What the files of a library's project are to the library, found without opening it as one, which
/// would write its order files anew. The checks look at nothing else.
namespace kxbox {

/// Why a file is not taken, and where in it the reason is.
struct Damage
{
    QString path;
    std::string reason;
    int line = 0; ///< from 1 on; 0 where there is none, like `column`
    int column = 0;
};

/// The order file of a folder.
struct OrderFile
{
    QString path;
    bool isPossible = true; ///< no directory is in its place
    bool exists = false;
    std::optional<Damage> damage;   ///< why an existing one counts as empty
    std::vector<std::string> names; ///< the entries
    int nameless = 0;               ///< how many entries have no name
};

/// A directory that the library makes a node of.
struct SurveyedNode
{
    QString path; ///< empty for the root
    bool isBox = false;
    bool hasBothBoxFiles = false;

    // Of a box
    QStringList missingBitmaps; ///< those that name no resource
    int refusedPorts = 0;       ///< inputs, outputs and parameters that the library leaves out

    // Of a folder
    std::optional<Damage> refusedBox; ///< a box file, which makes no box of it
    bool wasBox = false; ///< it, or a directory around it, has such a file: not meant as a folder
    OrderFile order;
    QStringList directories; ///< the file names of the nodes in it
    QStringList passedOver;  ///< directories that the library does not look at
    QStringList strays;      ///< files that belong to nothing
};

/// A file directly in the directory of the translations.
struct TranslationFile
{
    QString path;
    KR::Localization::Translator translator;
    std::optional<Damage> damage; ///< why it can't be read

    QString language() const { return translator.languageCode(); }
};

struct Survey
{
    std::vector<SurveyedNode> nodes;           ///< in the order of the tree, the root first
    std::vector<TranslationFile> translations; ///< in the order in which the library reads them
    QStringList translationDirectories;        ///< directories beside them
    QStringList paths;                         ///< all files and directories of the project
    QString type;                              ///< the metadata "Type" and "Version"
    QString version;
};

/// Reads all of a project's order files, box files and translations.
Survey surveyOf(const pk::project::ProjectModel& model, Progress& progress);

/// A file as the library would read it.
TranslationFile readTranslationFile(const QString& path, const QByteArray& bytes);

/// The parts of a project path.
QString nameOf(const QString& path);
QString directoryOf(const QString& path);
/// A directory's path with a "/" behind it; nothing for the top.
QString prefixOf(const QString& directory);
/// What the library calls the node in a directory, and the directory of a node.
QString displayNameOf(const QString& fileName);
QString fileNameOf(const QString& displayName);
/// The context of the messages of the node at `path`.
QString contextOf(const QString& path);

} // namespace kxbox
