// What every fuzz target shares: one offscreen QApplication for the
// process, Qt's messages kept quiet, a reader of the input's bytes, and the
// end of an input (every window gone, every deferred deletion done) so that
// nothing of one input leaks into the next or is taken for a leak.
#pragma once

#include <QByteArray>
#include <QString>
#include <QWidget>

#include <cstddef>
#include <cstdint>

namespace fuzz {

// Once per process, from LLVMFuzzerInitialize: an offscreen QApplication
// (never deleted: it lives until exit), a private XDG_CONFIG_HOME for the
// per-user settings, Qt's messages dropped (VELMORA_FUZZ_VERBOSE=1 keeps
// them) and the trapped-error handler recording instead of showing a box.
void init(int *argc, char ***argv);

// The settings file the component keeps windows in, inside the private
// configuration folder, and a file of that folder for the target's own use.
QString settingsFile();
QString privatePath(const QString &name);

// Whether VELMORA_FUZZ_VERBOSE asks for Qt's messages (and the targets'
// traces of what they do).
bool verbose();

// Lets posted events, timers that are due and deferred deletions run.
void settle(int rounds = 3);
// Runs the event loop for `ms` milliseconds.
void wait(int ms);
// Deletes every top-level window and what is waiting for deletion.
void closeAll();

// Reads an input from the front; past its end every value is 0.
class Bytes {
public:
    Bytes(const std::uint8_t *data, std::size_t size)
        : m_data(data), m_size(size) {}
    bool atEnd() const { return m_pos >= m_size; }
    std::size_t left() const { return m_size - m_pos; }
    std::uint8_t u8() { return m_pos < m_size ? m_data[m_pos++] : 0; }
    std::uint16_t u16() { return std::uint16_t(u8() | (u8() << 8)); }
    std::uint32_t u32() { return std::uint32_t(u16()) | (std::uint32_t(u16()) << 16); }
    // 0 to n - 1.
    int pick(int n) { return n > 0 ? u8() % n : 0; }
    bool flag() { return u8() & 1; }
    // Up to `most` bytes as Latin-1 text.
    QByteArray take(std::size_t most);

private:
    const std::uint8_t *m_data;
    std::size_t m_size;
    std::size_t m_pos = 0;
};

} // namespace fuzz

// A finding the harness checks for itself: printed, then abort() so that
// libFuzzer keeps the input (with VELMORA_FUZZ_REPORT_ONLY=1 it goes on).
#define FUZZ_CHECK(cond, ...)                                                                                          \
    do {                                                                                                               \
        if (!(cond))                                                                                                   \
            fuzz::fail(__FILE__, __LINE__, #cond, QString::asprintf(__VA_ARGS__));                                     \
    } while (0)

namespace fuzz {
void fail(const char *file, int line, const char *cond, const QString &why);
}
