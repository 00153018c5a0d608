// Reads a program file's headers: the MZ header, the offset of the new
// header at 0x3C, then "PE\0\0" with its file and optional headers, or "NE".
#include "exec/program_search.h"

#include "app/toolkit/handles.h"

#include <windows.h>

#include <cstdint>
#include <cstring>

namespace {

struct HeaderFacts {
    bool Opened = false;
    bool Readable = false;        // starts with "MZ"
    bool Portable = false;        // "PE\0\0"
    bool SegmentedWindows = false; // "NE" with target Windows (byte 0x36)
    bool SegmentedGui = false;    // "NE" with the word 2 at 0x54, as the kind reads it
    uint16_t Magic = 0;         // optional header: 0x10B PE32, 0x20B PE32+
    uint16_t Subsystem = 0;
};

// The first bytes of a file, which hold the headers of nearly every program,
// so that classifying one costs a single read.
constexpr DWORD kHeadSize = 4096;

// The file's bytes at offset: from head when it holds them, else read.
bool BytesAt(HANDLE file, const uint8_t* head, DWORD headSize, uint32_t offset, void* buffer, DWORD size)
{
    if (uint64_t(offset) + size <= headSize) {
        std::memcpy(buffer, head + offset, size);
        return true;
    }
    LARGE_INTEGER position{};
    position.QuadPart = offset;
    DWORD got = 0;
    return SetFilePointerEx(file, position, nullptr, FILE_BEGIN) && ReadFile(file, buffer, size, &got, nullptr) &&
           got == size;
}

uint16_t Word(const uint8_t* p) { return uint16_t(p[0] | (p[1] << 8)); }

HeaderFacts ReadHeaders(HANDLE file)
{
    HeaderFacts facts;
    uint8_t dos[kHeadSize];
    DWORD headSize = 0;
    if (!ReadFile(file, dos, kHeadSize, &headSize, nullptr)) return facts;
    if (headSize < 64 || dos[0] != 'M' || dos[1] != 'Z') return facts;
    facts.Readable = true;
    uint32_t offset = uint32_t(dos[60] | (dos[61] << 8) | (dos[62] << 16) | (uint32_t(dos[63]) << 24));
    if (offset < 64) return facts;
    // The signature, the file header (20 bytes) and the optional header up
    // to its subsystem field (offset 68 in both PE32 and PE32+).
    uint8_t header[4 + 20 + 70] = {};
    if (!BytesAt(file, dos, headSize, offset, header, 2)) return facts;
    if (header[0] == 'N' && header[1] == 'E') {
        uint8_t segmented[0x56] = {};
        if (BytesAt(file, dos, headSize, offset, segmented, sizeof(segmented))) {
            facts.SegmentedWindows = segmented[0x36] == 2;
            facts.SegmentedGui = Word(segmented + 0x54) == 2;
        }
        return facts;
    }
    if (!BytesAt(file, dos, headSize, offset, header, sizeof(header)) || std::memcmp(header, "PE\0\0", 4) != 0)
        return facts;
    facts.Portable = true;
    facts.Magic = Word(header + 24);
    facts.Subsystem = Word(header + 24 + 68);
    return facts;
}

HeaderFacts FactsOf(const wchar_t* path)
{
    UniqueFile file(CreateFileW(path, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                OPEN_EXISTING, 0, nullptr));
    if (!file) return {};
    HeaderFacts facts = ReadHeaders(file.get());
    facts.Opened = true;
    return facts;
}

const wchar_t* ClosingText(uint16_t subsystem)
{
    switch (subsystem) {
    case 1: return L", Native)";
    case 2: return L", GUI)";
    case 3: return L", Console)";
    case 7: return L", POSIX)";
    case 10: return L", EFI)";
    default: return L")";
    }
}

} // namespace

int ExecutableKind(const wchar_t* path)
{
    HeaderFacts facts = FactsOf(path);
    if (!facts.Opened || facts.SegmentedGui) return 0;
    if (!facts.Portable) return 1;
    return facts.Subsystem == IMAGE_SUBSYSTEM_WINDOWS_GUI ? 0 : 2;
}

std::wstring ExecutableDescription(const wchar_t* path)
{
    HeaderFacts facts = FactsOf(path);
    if (!facts.Readable) return {};
    if (facts.SegmentedWindows) return L"(16-bit, GUI)";
    if (!facts.Portable) return L"(DOS)";
    if (facts.Magic == 0x10B) return std::wstring(L"(32-bit") + ClosingText(facts.Subsystem);
    if (facts.Magic == 0x20B) return std::wstring(L"(64-bit") + ClosingText(facts.Subsystem);
    return {};
}
