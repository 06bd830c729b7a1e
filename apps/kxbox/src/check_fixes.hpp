#pragma once

#include "open_library.hpp"
#include "problems.hpp"
#include "survey.hpp"

#include <QMap>
#include <QString>

#include <string>
#include <vector>

/// What `check --fix` mends, in the library's project model. It loses nothing: what can't be mended
/// without a loss stays as it is. Translation files are written one by one, because the library's
/// own changes of messages remove every file that it can't read.
namespace kxbox {

/// What was mended, and what was not although it is of a kind that can be. Each text begins with
/// the path.
struct Fixes
{
    std::vector<std::string> done;
    std::vector<std::string> refused;
    QMap<QString, QString> renamed; ///< project paths, before and after
};

/// A file of the library's project that was changed says so here.
void note(std::vector<std::string>& texts, const QString& path, const std::string& text);

/// Gives directories the names that the library would give them. Their messages follow in all
/// of `files`.
void fixDirectoryNames(OpenLibrary& library, std::vector<TranslationFile>& files, Fixes& fixes);

/// Gives files without language the one in their names, puts files of one language together, and
/// removes untranslated messages of what is no node. `files` are all there are, and become those
/// that there are then.
void fixTranslations(OpenLibrary& library, std::vector<TranslationFile>& files, Fixes& fixes);

/// Writes into each of `files`, with contexts that begin with a key changed to its value. False,
/// and nothing is written, when that could lose messages.
bool moveMessages(OpenLibrary& library, std::vector<TranslationFile>& files,
                  const QMap<QString, QString>& contexts);

/// Sets "Type" and "Version" where there are none.
void fixMetadata(OpenLibrary& library, Fixes& fixes);

/// `problems` under the names that fixDirectoryNames() has given.
Problems followed(const Problems& problems, const QMap<QString, QString>& renamed);

} // namespace kxbox
