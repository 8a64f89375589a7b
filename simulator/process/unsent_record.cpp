#include "simulator/process/unsent_record.h"

#include "simulator/process/protocol.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <charconv>
#include <cstring>
#include <optional>
#include <string>
#include <system_error>
#include <utility>

namespace velmoranth::simulator {
namespace {

// A few hundred notes.
constexpr std::size_t kMemory = std::size_t{64} * 1024;
// How many of its bytes are used, then the bytes: how many notes were before these, and a length
// and so many bytes for each.
using Size = std::uint32_t;
constexpr std::size_t kBytesBegin = sizeof(Size);
constexpr std::size_t kNotesBegin = sizeof(std::uint64_t);

// How a note begins: its bytes as record::toBytes, or "PLACE ANSWER".
constexpr char kEntry = 'e';
constexpr char kAnswer = 'a';

// Takes a number from the front; nothing when there is none.
template <class Number>
std::optional<Number> takeNumber(std::string_view& bytes) {
    Number number = 0;
    if (bytes.size() < sizeof number) {
        return std::nullopt;
    }
    bytes.copy(reinterpret_cast<char*>(&number), sizeof number);
    bytes.remove_prefix(sizeof number);
    return number;
}

template <class Number>
void appendNumber(std::string& bytes, Number number) {
    bytes.append(reinterpret_cast<const char*>(&number), sizeof number);
}

}  // namespace

desktop::Result<UnsentRecord> UnsentRecord::make() {
    const desktop::Descriptor memory(::memfd_create("velmoranth record", MFD_CLOEXEC));
    desktop::Descriptor descriptor(::fcntl(memory.get(), F_DUPFD_CLOEXEC, kFreeDescriptors));
    if (!descriptor.isOpen() || ::ftruncate(descriptor.get(), kMemory) != 0) {
        return tl::unexpected(desktop::problemOfErrno(errno, "memory for a record"));
    }
    auto made = map(std::move(descriptor));
    if (made) {
        made->begin();
    }
    return made;
}

desktop::Result<UnsentRecord> UnsentRecord::open(int descriptor) {
    return map(desktop::Descriptor(descriptor));
}

desktop::Result<UnsentRecord> UnsentRecord::map(desktop::Descriptor descriptor) {
    void* const memory =
        ::mmap(nullptr, kMemory, PROT_READ | PROT_WRITE, MAP_SHARED, descriptor.get(), 0);
    if (memory == MAP_FAILED) {
        return tl::unexpected(desktop::problemOfErrno(errno, "memory for a record"));
    }
    return UnsentRecord(std::move(descriptor), {static_cast<std::uint8_t*>(memory), kMemory});
}

UnsentRecord::UnsentRecord(UnsentRecord&& other) noexcept
    : descriptor_(std::move(other.descriptor_)),
      memory_(std::exchange(other.memory_, {})),
      sent_(other.sent_),
      unsent_(other.unsent_) {}

UnsentRecord& UnsentRecord::operator=(UnsentRecord&& other) noexcept {
    std::swap(descriptor_, other.descriptor_);
    std::swap(memory_, other.memory_);
    sent_ = other.sent_;
    unsent_ = other.unsent_;
    return *this;
}

UnsentRecord::~UnsentRecord() {
    if (!memory_.empty()) {
        ::munmap(memory_.data(), memory_.size());
    }
}

std::size_t UnsentRecord::size() const {
    const std::atomic_ref<Size> size(*reinterpret_cast<Size*>(memory_.data()));
    return std::min<std::size_t>(size.load(std::memory_order_acquire), kMemory - kBytesBegin);
}

// After the bytes, so that whoever reads them has all that it says there are.
void UnsentRecord::setSize(std::size_t size) {
    const std::atomic_ref<Size> place(*reinterpret_cast<Size*>(memory_.data()));
    place.store(static_cast<Size>(size), std::memory_order_release);
}

bool UnsentRecord::add(const std::string& note) {
    const std::size_t used = size();
    const std::size_t wanted = sizeof(std::uint32_t) + note.size();
    if (wanted > kMemory - kBytesBegin - used) {
        return false;
    }
    std::uint8_t* const place = memory_.data() + kBytesBegin + used;
    const auto length = static_cast<std::uint32_t>(note.size());
    std::memcpy(place, &length, sizeof length);
    note.copy(reinterpret_cast<char*>(place) + sizeof length, note.size());
    setSize(used + wanted);
    ++unsent_;
    return true;
}

bool UnsentRecord::isEmpty() const {
    return size() <= kNotesBegin;
}

std::string_view UnsentRecord::bytes() const {
    return {reinterpret_cast<const char*>(memory_.data()) + kBytesBegin, size()};
}

void UnsentRecord::clear() {
    sent_ += std::exchange(unsent_, 0);
    begin();
}

// Nothing is there before the number of those that came before is.
void UnsentRecord::begin() {
    setSize(kNotesBegin);
    std::memcpy(memory_.data() + kBytesBegin, &sent_, sizeof sent_);
}

std::string UnsentRecord::alone(const std::string& note) {
    std::string bytes;
    appendNumber(bytes, sent_++);
    appendNumber(bytes, static_cast<std::uint32_t>(note.size()));
    begin();
    return bytes + note;
}

std::string noteOf(const record::Entry& entry) {
    return kEntry + record::toBytes(entry);
}

std::string noteOf(std::size_t place, std::string_view answer) {
    return kAnswer + std::to_string(place) + " " + std::string(answer);
}

void RecordNotes::take(std::string_view bytes) {
    std::uint64_t number = takeNumber<std::uint64_t>(bytes).value_or(0);
    for (; const auto length = takeNumber<std::uint32_t>(bytes); ++number) {
        const std::string_view note = bytes.substr(0, *length);
        bytes.remove_prefix(note.size());
        if (number == count_) {
            ++count_;
            takeNote(note);
        }
    }
}

void RecordNotes::takeNote(std::string_view note) {
    if (note.starts_with(kEntry)) {
        record_.push_back(record::fromBytes(note.substr(1)).value_or(record::Entry()));
        return;
    }
    std::size_t place = 0;
    const char* const end = note.data() + note.size();
    const auto [rest, error] =
        std::from_chars(note.data() + std::min<std::size_t>(1, note.size()), end, place);
    if (error == std::errc() && rest != end && place >= begin_ && place - begin_ < record_.size()) {
        record_[place - begin_].answer.assign(rest + 1, end);
    }
}

record::Record RecordNotes::takeRecord() {
    begin_ += record_.size();
    return std::exchange(record_, {});
}

}  // namespace velmoranth::simulator
