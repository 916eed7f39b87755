// until-painted RRGGBB PIXELS COMMAND...: starts the command on this X display and prints how many
// milliseconds pass until so many pixels of that colour are seen on the screen, and the command's
// peak memory in KiB up to a moment later; then ends the command.

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <xcb/xcb.h>

#include <chrono>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <thread>

namespace {

using Clock = std::chrono::steady_clock;

constexpr auto kPollInterval = std::chrono::milliseconds(1);
constexpr auto kLimit = std::chrono::seconds(30);
// What the window loads on being shown and activated belongs to its peak.
constexpr auto kMomentLater = std::chrono::milliseconds(250);

class Screen {
public:
    Screen()
        : fConnection(xcb_connect(nullptr, nullptr))
        , fScreen(xcb_setup_roots_iterator(xcb_get_setup(fConnection)).data) {}
    ~Screen() { xcb_disconnect(fConnection); }
    Screen(const Screen&) = delete;
    Screen& operator=(const Screen&) = delete;

    bool Shows(std::uint32_t color, std::size_t enough) const {
        const auto request =
            xcb_get_image(fConnection, XCB_IMAGE_FORMAT_Z_PIXMAP, fScreen->root, 0, 0,
                          fScreen->width_in_pixels, fScreen->height_in_pixels, ~0u);
        const std::unique_ptr<xcb_get_image_reply_t, decltype(&std::free)> image(
            xcb_get_image_reply(fConnection, request, nullptr), &std::free);
        if (image == nullptr)
            return false;
        const auto* pixels =
            reinterpret_cast<const std::uint32_t*>(xcb_get_image_data(image.get()));
        const auto count = static_cast<std::size_t>(xcb_get_image_data_length(image.get())) / 4;
        std::size_t found = 0;
        for (std::size_t i = 0; i < count && found < enough; ++i)
            found += (pixels[i] & 0xFFFFFF) == color;
        return found == enough;
    }

private:
    xcb_connection_t* fConnection;
    xcb_screen_t* fScreen;
};

pid_t Start(char** command) {
    const pid_t child = fork();
    if (child == 0) {
        execvp(command[0], command);
        _exit(127);
    }
    return child;
}

/// Ends the command and answers its peak memory in KiB.
long End(pid_t child) {
    rusage used{};
    kill(child, SIGKILL);
    wait4(child, nullptr, 0, &used);
    return used.ru_maxrss;
}

} // namespace

int main(int count, char** arguments) {
    if (count < 4)
        return 2;
    const auto color = static_cast<std::uint32_t>(std::strtoul(arguments[1], nullptr, 16));
    const std::size_t pixels = std::strtoul(arguments[2], nullptr, 10);
    const Screen screen;
    if (screen.Shows(color, pixels)) {
        std::fputs("until-painted: the colour is on the screen already\n", stderr);
        return 1;
    }
    const auto start = Clock::now();
    const pid_t child = Start(arguments + 3);
    bool painted = false;
    while (!painted && Clock::now() - start < kLimit && waitpid(child, nullptr, WNOHANG) == 0) {
        std::this_thread::sleep_for(kPollInterval);
        painted = screen.Shows(color, pixels);
    }
    const std::chrono::duration<double, std::milli> time = Clock::now() - start;
    std::this_thread::sleep_for(kMomentLater);
    const long peak = End(child);
    if (!painted)
        return 1;
    while (screen.Shows(color, 1))
        std::this_thread::sleep_for(kPollInterval);
    std::printf("%.2f %ld\n", time.count(), peak);
}
