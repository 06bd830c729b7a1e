#pragma once

#include <krlocalization/export.hpp>

#include <QMap>
#include <QString>
#include <QStringView>

#include <map>
#include <vector>

/// What is done to the contexts of messages when boxes are inserted, renamed and removed.
///
/// A context is a path: a library's name, a ":" and then, each after a "/", the names of folders
/// and of a box. All texts are literal and compared as they are, upper and lower case differ, and
/// only whole components match: Library:/Walk has nothing to do with Library:/Walker.
namespace KR::Localization {

/// Moves the messages of inserted boxes, whose contexts come from wherever the boxes were before,
/// below the boxes' new parent.
class KRLOCALIZATION_EXPORT ContextBoxNamePatcher
{
public:
    /// `context` is the new parent's context; `names` says how each box was called before and is
    /// called now. An empty former name matches nothing.
    ContextBoxNamePatcher(const QString& context, QMap<QString, QString> names);

    /// Looks for the leftmost component after the first "/" that is a former name. If there is one,
    /// `context` becomes the parent's context, "/", the new name and all that followed the
    /// component, and the result is true, also when that is what it was before. Otherwise nothing
    /// changes and the result is false. Takes time in proportion to the context and to the
    /// logarithm of the number of names.
    bool operator()(QString& context) const;

private:
    QString m_prefix;
    QMap<QString, QString> m_names;
    std::map<QStringView, QString> m_newNames; // its keys look into those of m_names
};

/// Gives contexts new values, and so everything below them.
class KRLOCALIZATION_EXPORT ContextMatchPatcher
{
public:
    /// `contexts` maps old to new.
    explicit ContextMatchPatcher(const QMap<QString, QString>& contexts);

    /// If `context` is a key, or a key followed by "/" and more, the key is replaced by its value
    /// and the result is true; of several keys the longest counts. Otherwise nothing changes and
    /// the result is false. What was put in is not looked at again, so contexts can be swapped.
    bool operator()(QString& context) const;

private:
    QMap<QString, QString> m_contexts;
    std::map<QStringView, QString> m_newContexts; // its keys look into those of m_contexts
    std::vector<int> m_lengths;                   // of the keys, each once, the longest first
};

/// Finds a context and everything below it.
class KRLOCALIZATION_EXPORT ContextRecursiveFinder
{
public:
    explicit ContextRecursiveFinder(QString context);

    /// Whether `context` is the one of the constructor, or that one followed by "/" and more.
    bool operator()(const QString& context) const;

private:
    QString m_context;
};

} // namespace KR::Localization
