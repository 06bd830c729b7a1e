#pragma once

#include "libraries.hpp"

#include <QList>
#include <QString>

#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace fuzz {

/// What a node must be: the plain model beside which a library is driven. It has the names that the
/// library gave, and all else that was asked for.
struct Twin
{
    using Children = std::vector<std::unique_ptr<Twin>>;

    std::string name;
    bool isBox = false;
    QString tooltip;
    QList<QString> bitmaps;
    bool expanded = true;
    std::set<std::string> resources;                   ///< each holds its own name
    std::vector<std::pair<QString, QString>> messages; ///< language and source text
    Children children;
    std::set<std::string> left; ///< file names at which taken children left their files

    /// Without the files that taken nodes left, like a node's clone.
    std::unique_ptr<Twin> clone() const;
    /// Of this node and all below.
    void dropMessages();
    /// The nodes of the tree, this one included.
    std::size_t size() const;
    /// Puts last, in the order of their bytes, the children that order files cannot name.
    void sortAsLoaded();
};

/// Names, paths and data of all nodes, to be compared with what is expected of them.
std::string textOf(const Twin& twin);
std::string textOf(const KX::BoxLibraryNode& node);

/// The paths at which taken nodes of the tree left their files.
std::vector<std::string> leftPaths(const Twin& root);

/// The files that a library of this tree has, without translations.
Contents filesOf(const Twin& root);
/// The files that a library has. What is in order files and box files is not looked at.
Contents filesOf(const KX::BoxLibrary& library, const Twin& root);

/// One message as a text.
std::string messageText(const QString& language, const std::string& context, const QString& source,
                        const QString& translation);

/// The messages of all nodes, each as one text.
std::multiset<std::string> messagesOf(const Twin& root);
std::multiset<std::string> messagesOf(const KX::BoxLibrary::Translators& translators);

} // namespace fuzz
