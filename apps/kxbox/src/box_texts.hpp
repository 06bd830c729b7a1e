#pragma once

#include <kxboxlibrary/box_data.hpp>

#include <QStringList>

namespace kxbox {

/// The names and tooltips of a box's inputs, outputs and parameters, in this order; empty ones are
/// left out.
QStringList ioTexts(const KX::BoxData& box);

/// What there is to translate of a box: its tooltip and its ioTexts(), each text once.
QStringList translatableTexts(const KX::BoxData& box);

} // namespace kxbox
