// Drawing in a process of its own, which may die.
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <exception>

#include "graph/graph.h"

namespace kvt_tool {

namespace {

/// What comes before the drawing, or before the reason why there is none.
constexpr char drawn = '+';
constexpr char not_drawn = '-';

void send(int pipe, const std::string &answer) {
    for (size_t sent = 0; sent < answer.size();) {
        const ssize_t length = write(pipe, answer.data() + sent, answer.size() - sent);
        if (length < 0 && errno != EINTR) {
            return;
        }
        sent += length < 0 ? 0 : static_cast<size_t>(length);
    }
}

std::string receive(int pipe) {
    std::string answer;
    char part[1 << 16];
    for (;;) {
        const ssize_t length = read(pipe, part, sizeof part);
        if (length == 0 || (length < 0 && errno != EINTR)) {
            return answer;
        }
        answer.append(part, length < 0 ? 0 : static_cast<size_t>(length));
    }
}

[[noreturn]] void draw_and_send(int pipe, const std::string &dot, const std::string &format) {
    try {
        std::string reason;
        const std::optional<std::string> drawing = render(dot, format, reason);
        send(pipe, drawing.has_value() ? drawn + *drawing : not_drawn + reason);
    } catch (const std::exception &) { // no answer tells as much
    }
    _exit(0);
}

} // namespace

std::optional<std::string> render_apart(const std::string &dot, const std::string &format,
                                        std::string &reason) {
    int pipes[2];
    if (pipe(pipes) != 0) {
        reason = std::strerror(errno);
        return std::nullopt;
    }
    const pid_t child = fork();
    if (child == 0) {
        close(pipes[0]);
        draw_and_send(pipes[1], dot, format);
    }
    close(pipes[1]);
    std::string answer;
    if (child < 0) {
        reason = std::strerror(errno);
    } else {
        answer = receive(pipes[0]);
        reason = "Graphviz has failed, perhaps for lack of memory";
    }
    close(pipes[0]);
    int status = 0;
    while (child > 0 && waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    if (answer.empty() || status != 0) {
        return std::nullopt;
    }
    if (answer.front() == not_drawn) {
        reason = answer.substr(1);
        return std::nullopt;
    }
    return answer.erase(0, 1);
}

} // namespace kvt_tool
