#pragma once

#include <QtCore/QByteArrayView>

#include <exception>
#include <optional>
#include <string>

namespace kovalin::cli {

// A program's standard streams. One thread.

/// Whoever read standard output has gone. Nothing to complain about: the program just ends.
class OutputClosed final : public std::exception {
public:
    [[nodiscard]] const char* what() const noexcept override { return "nobody reads standard output"; }
};

/// To be called once, before any file is opened: makes a write to a closed pipe an error instead of a signal, and
/// makes sure that no file opened later takes the number of a standard stream that was closed. `program` is what
/// messages begin with.
void prepareStandardStreams(std::string program);

/// The next line of standard input, without its end ("\n", "\r\n", or the end of the input); nullopt after the last. As
/// much is read as is there, so that the program can be driven through pipes. Throws BadInput when it can't be read.
[[nodiscard]] std::optional<std::string> readInputLine();

/// Buffered. Both throw OutputClosed when the reader has gone, and BadInput when standard output fails otherwise.
void writeOutput(QByteArrayView text);
void flushOutput();

/// Writes the program's name, ": ", the message and a line end to standard error. Control characters in the message,
/// as a file's name may have them, become "?", so that it stays one line.
void writeError(std::string message);

/// The text with each control character made a "?".
[[nodiscard]] std::string onOneLine(std::string text);

} // namespace kovalin::cli
