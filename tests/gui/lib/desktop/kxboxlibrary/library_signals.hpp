#pragma once

#include "support.hpp"

namespace KX::test {

/// What a library signals while this lives, in order, such as "titleChanged Demo".
class LibrarySignals
{
public:
    explicit LibrarySignals(const BoxLibrary& library)
    {
        const auto flag = [this](const char* name) {
            return [this, name = std::string(name)](bool value) {
                m_all.push_back(name + (value ? " true" : " false"));
            };
        };
        QObject::connect(&library, &BoxLibrary::titleChanged, &m_context,
                         [this](const QString& title) {
                             m_all.push_back("titleChanged " + title.toStdString());
                         });
        QObject::connect(&library, &BoxLibrary::dataChanged, &m_context,
                         [this](const BoxLibraryNode* node) {
                             m_all.push_back("dataChanged " + node->path().toStdString());
                         });
        QObject::connect(&library, &BoxLibrary::dirtyChanged, &m_context, flag("dirtyChanged"));
        QObject::connect(&library, &BoxLibrary::readOnlyChanged, &m_context,
                         flag("readOnlyChanged"));
        QObject::connect(&library, &BoxLibrary::translationFilesListChanged, &m_context,
                         [this] { m_all.emplace_back("translationFilesListChanged"); });
    }
    LibrarySignals(const LibrarySignals&) = delete;
    LibrarySignals& operator=(const LibrarySignals&) = delete;
    LibrarySignals(LibrarySignals&&) = delete;
    LibrarySignals& operator=(LibrarySignals&&) = delete;
    ~LibrarySignals() = default;

    const Names& all() const { return m_all; }

private:
    QObject m_context; // ends the connections
    Names m_all;
};

} // namespace KX::test
