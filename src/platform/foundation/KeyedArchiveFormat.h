#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QCborValue>
#include <QtCore/QString>

#include <optional>

// What KeyedArchiver writes and KeyedUnarchiver reads. A persisted format: files of an earlier program are read by
// later ones, so a change of what follows needs a new version number.
//
// An archive is one CBOR item (RFC 8949), a map with four entries in this order:
//
//   "format"    the text "kovalin.keyed-archive"
//   "version"   the integer 1
//   "checksum"  the BLAKE2s-128 of the bytes of the root, as 32 hexadecimal digits
//   "root"      the root: one object, or a list of objects
//
// and below it only these kinds:
//
//   object     map; its keys are texts, each once, in the order in which they were written
//   list       array
//   text       text string in UTF-8. UTF-16 that has no UTF-8 form, a surrogate without its partner, is written as "?";
//              a byte order mark in front of a text is dropped in reading
//   integer    integer of 64 bits with sign
//   double     floating point number of 64 bits
//   boolean    true or false
//   colour     array of four integers from 0 to 65535: red, green, blue, alpha
//
// Absent things are not written. Lengths are given in front, never left open. Equal objects give equal bytes.
namespace kovalin::platform::KeyedArchiveFormat {

/// How deep objects may lie in each other, the root (or an element of a root list) being 1.
inline constexpr int kMaximumObjectDepth = 32;

/// Larger archives are neither written nor read.
inline constexpr qint64 kMaximumBytes = 64 * 1024 * 1024;

/// Archives with more values (objects, lists and what is in them) are neither written nor read. In memory a value takes
/// up to a hundred times the one byte that it takes in an archive.
inline constexpr qint64 kMaximumValues = 1'000'000;

/// The bytes of an archive with that root; std::nullopt when rootOfArchive() would not read them, because they would be
/// beyond a limit or two keys are the same in UTF-8. Any thread.
[[nodiscard]] std::optional<QByteArray> bytesOfArchive(const QCborValue& root);

/// The root of an archive, an object or a list, with everything in it of one of the kinds above. Any thread.
///
/// Throws PlatformException, "KeyedUnarchiveException", when `bytes` are anything but a whole archive of this version.
/// Reads hostile bytes safely: nesting and values are bounded, and no memory is taken for a length before that many
/// bytes are seen.
[[nodiscard]] QCborValue rootOfArchive(const QByteArray& bytes);

/// A PlatformException, "KeyedUnarchiveException", with that reason, thrown.
[[noreturn]] void throwUnarchiveException(const QString& reason);

/// The kind of a value, in a word for people.
[[nodiscard]] QString kindOf(const QCborValue& value);

} // namespace kovalin::platform::KeyedArchiveFormat
