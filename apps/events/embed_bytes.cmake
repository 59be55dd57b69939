# Writes the header OUTPUT with the bytes of the file INPUT as the array NAME in NAMESPACE.
file(READ "${INPUT}" bytes HEX)
string(REGEX REPLACE "(..)" "0x\\1," bytes "${bytes}")
string(REPEAT "0x..," 16 line)
string(REGEX REPLACE "(${line})" "\\1\n" bytes "${bytes}")
file(WRITE "${OUTPUT}" "#pragma once

namespace ${NAMESPACE} {

inline constexpr unsigned char ${NAME}[] = {
${bytes}
};

} // namespace ${NAMESPACE}
")
