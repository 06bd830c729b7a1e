#include "table.hpp"

#include <QString>
#include <QVector>

#include <algorithm>
#include <cstddef>

namespace kxbox {

namespace {

/// In characters, of which one may be two units of UTF-16.
std::size_t widthOf(const std::string& cell)
{
    return static_cast<std::size_t>(QString::fromStdString(cell).toUcs4().size());
}

} // namespace

std::string table(const std::vector<std::vector<std::string>>& rows)
{
    std::vector<std::size_t> widths(rows.empty() ? 0 : rows.front().size(), 0);
    for (const auto& row : rows) {
        for (std::size_t i = 0; i < widths.size(); ++i) {
            widths[i] = std::max(widths[i], widthOf(row[i]));
        }
    }
    std::string text;
    for (const auto& row : rows) {
        for (std::size_t i = 0; i < widths.size(); ++i) {
            const std::string space(widths[i] - widthOf(row[i]), ' ');
            text += i == 0 ? row[i] + space : "  " + space + row[i];
        }
        text += '\n';
    }
    return text;
}

} // namespace kxbox
