// Prints how many threads it has and how much time of the processor it has taken, in nanoseconds, when it comes to main(). Built
// with the library and without it.

#ifdef KOVALIN_BENCH_LINKED
#include <QXSDKKovalinKit/QXSDKKovalinKit.h>
#endif

#include <QtQuick/QQuickItem>

#include <cstdio>
#include <ctime>
#include <filesystem>
#include <iterator>

int main(int argc, char** /*argv*/)
{
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    const auto threads = std::distance(std::filesystem::directory_iterator("/proc/self/task"), {});
    if (argc > 1) { // never: the linker is not to leave the libraries out
#ifdef KOVALIN_BENCH_LINKED
        return QXSDKKovalinStickerPickerViewController::create() ? 1 : 0;
#else
        return QQuickItem().hasFocus() ? 1 : 0;
#endif
    }
    constexpr double nanosPerSecond = 1e9;
    std::printf("%d %.0f\n", static_cast<int>(threads),
                static_cast<double>(time.tv_sec) * nanosPerSecond + static_cast<double>(time.tv_nsec));
    return 0;
}
