#include "learned_search/AutoClosingFileDescriptor.h"

#include <unistd.h>

namespace vole::learned_search {

AutoClosingFileDescriptor::~AutoClosingFileDescriptor()
{
    ::close(_descriptor);
}

} // namespace vole::learned_search
