#include "SampleRecords.h"

#include <cstdio>

using namespace kovalin;

// Writes an archive of a list, a full pack and an empty one, into the file that it is given.
int main(int argc, char** argv)
{
    if (argc != 2) {
        std::fputs("usage: write_sample_archive FILE\n", stderr);
        return 2;
    }
    const QList<test::SamplePack> root = {test::samplePack(), test::SamplePack()};
    return platform::KeyedArchiver::archiveRootObject(root, QString::fromLocal8Bit(argv[1])) ? 0 : 1;
}
