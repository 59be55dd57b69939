#pragma once

#include <stdexcept>

namespace kovalin::cli {

/// Something that was given to the program can't be used. The text names the file or stream and what is wrong with it;
/// the program prints it as one line on standard error and ends with exit code 1.
class BadInput final : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

} // namespace kovalin::cli
