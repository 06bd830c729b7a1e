#pragma once

#include <kr/localization/translator.hpp>
#include <krlocalization/export.hpp>

#include <QByteArray>

/// Files of Qt Linguist: TS 2.1, and the older versions that Linguist reads.
///
/// The format is what Linguist's tools of Qt 5.15 read and write; its published description, the
/// document type in Qt's manual, leaves open what they do in detail.
namespace KR::Localization::TS {

/// Reads a file. What Linguist reads is read; what it refuses (a file that is not well-formed, has
/// another root element or an element of an unknown name), and, beyond that, anything that is not
/// UTF-8, defines entities or would take more than 240 MiB of memory (some 100,000 messages with
/// all that Linguist writes of them), gives an empty translator without a language code and one
/// warning, with the line and the reason, in the log's category "krlocalization".
///
/// Messages with the same key are all read. What Linguist drops is dropped: comments of XML,
/// `<defaultcodec>`, attributes of an unknown name.
KRLOCALIZATION_EXPORT Translator translatorFrom(const QByteArray& bytes);

/// Writes a file: the bytes that Linguist's lconvert would write of the same messages, so that
/// lconvert gives them back unchanged. With `withoutObsolete`, vanished and obsolete messages are
/// left out, as by "lconvert -no-obsolete".
///
/// As lconvert does it, messages are grouped by context in the order of first appearance; of
/// messages with the same id, or the same context, source and comment, the first is written, with
/// the translation of a later one if it has none; vanished and obsolete messages without a
/// translation are left out; texts end at their first NUL; a plural message gets as many forms as
/// the language has, and any message's lone surrogates become "?".
///
/// Where lconvert writes files that it can't read again, or that lose what they say, this function
/// keeps the meaning instead: special characters in attributes and user data, carriage returns in
/// contexts, and U+FFFE and U+FFFF are escaped, empty variants at the front of a form are left out,
/// a file name with ".." after a backslash is cleaned at once, and an absolute file name of a
/// location stays absolute.
KRLOCALIZATION_EXPORT QByteArray translatorTo(const Translator& translator, bool withoutObsolete);

/// Whether translatorFrom(bytes) surely gives `translator`, of which translatorTo(translator,
/// false) has made `bytes`: what is written need not be what is read. It is told without reading,
/// in a fifth of the time, by `known`, which another file of translatorTo() was read as: only
/// names of contexts may be different, of few messages, and none of them in need of a closer look,
/// as white space and control characters are. In doubt false.
KRLOCALIZATION_EXPORT bool isReadBack(const QByteArray& bytes, const Translator& translator,
                                      const Translator& known);

} // namespace KR::Localization::TS
