#pragma once

#include <map>
#include <string>

namespace KX {

/// The names of one folder's children, to find one that is free.
///
/// Finding a free name takes a look into an ordered map for each name tried, and a number that was
/// found taken is not tried again until it is free: n boxes of the same name cost n tries.
class SiblingNames
{
public:
    /// A name can be there several times.
    void add(const std::string& name);
    /// Takes away one of the name, which must be there.
    void remove(const std::string& name);
    /// The first that is not there of `base`, "base (2)", "base (3)" and so on.
    std::string firstFree(const std::string& base);

private:
    std::map<std::string, int> m_counts;
    // By base: the number of which, and of no smaller one, it is not known that it is taken. The
    // base itself has number 1; where there is no entry, 1 is not known to be taken.
    std::map<std::string, int> m_firstUnknown;
};

} // namespace KX
