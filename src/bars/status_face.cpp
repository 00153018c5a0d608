// The status bar's face, composed in a memory bitmap figure by figure and
// copied to the window in one step. Three sunken panels: the label with the
// percent figure, the clock, and the free memory. Each digit has a cell of
// its own, so blank leading zeros never shift the others.
#include "bars/status_bar.h"
#include "bars/status_window.h"

#include <string>

namespace {

constexpr RECT kLabelPanel = {4, 4, 187, 22};
constexpr RECT kClockPanel = {4, 25, 187, 64};
constexpr RECT kMemoryPanel = {4, 67, 187, 89};

HFONT MakeFont(int height, int weight)
{
    return CreateFontW(-height, 0, 0, 0, weight, 0, 0, 0, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS,
                       DEFAULT_QUALITY, VARIABLE_PITCH | FF_SWISS, L"Arial");
}

struct Composer {
    HDC dc;
    SchemeColours colours;

    void Fill(const RECT& rect, COLORREF colour) const
    {
        SetBkColor(dc, colour);
        ExtTextOutW(dc, 0, 0, ETO_OPAQUE, &rect, nullptr, 0, nullptr);
    }
    // A panel sunk into the face: dark edge above and left, light below and right.
    void Panel(const RECT& rect) const
    {
        Fill(rect, colours.Digits == 0xFFFFFF ? colours.Dark : colours.Light);
        Fill({rect.left - 1, rect.top - 1, rect.right, rect.top}, colours.Dark);
        Fill({rect.left - 1, rect.top - 1, rect.left, rect.bottom}, colours.Dark);
        Fill({rect.left, rect.bottom, rect.right + 1, rect.bottom + 1}, colours.Light);
        Fill({rect.right, rect.top, rect.right + 1, rect.bottom + 1}, colours.Light);
    }
    // Text left-aligned at x, centred on the panel's height; returns the x behind it.
    int Text(HFONT font, const RECT& panel, int x, const std::wstring& text) const
    {
        SelectObject(dc, font);
        SIZE size;
        GetTextExtentPoint32W(dc, text.c_str(), int(text.size()), &size);
        int y = panel.top + (panel.bottom - panel.top - size.cy) / 2;
        TextOutW(dc, x, y, text.c_str(), int(text.size()));
        return x + size.cx;
    }
    // A figure of count digits, right-aligned in its cells, leading zeros
    // blank unless keepZeros; returns the x behind the last cell.
    int Digits(HFONT font, const RECT& panel, int x, uint64_t value, int count, bool keepZeros) const
    {
        SelectObject(dc, font);
        SIZE cell;
        GetTextExtentPoint32W(dc, L"0", 1, &cell);
        for (int i = count - 1; i >= 0; --i) {
            uint64_t power = 1;
            for (int k = 0; k < i; ++k) power *= 10;
            bool blank = !keepZeros && i > 0 && value < power;
            wchar_t digit = wchar_t(L'0' + value / power % 10);
            if (!blank) TextOutW(dc, x, panel.top + (panel.bottom - panel.top - cell.cy) / 2, &digit, 1);
            x += cell.cx;
        }
        return x;
    }
};

} // namespace

void StatusBar::MakeFace()
{
    if (face_) return;
    HDC screen = GetDC(nullptr);
    face_ = CreateCompatibleBitmap(screen, kStatusWidth, kStatusHeight);
    ReleaseDC(nullptr, screen);
    bigDigits_ = MakeFont(30, FW_BOLD);
    smallDigits_ = MakeFont(15, FW_BOLD);
    labelFont_ = MakeFont(12, FW_NORMAL);
}

void StatusBar::FreeFace()
{
    auto release = [](auto& object) {
        if (object) DeleteObject(object);
        object = nullptr;
    };
    release(face_);
    release(bigDigits_);
    release(smallDigits_);
    release(labelFont_);
}

void StatusBar::Paint(HDC target)
{
    MakeFace();
    if (!face_) return;
    HDC dc = CreateCompatibleDC(target);
    HGDIOBJ oldBitmap = SelectObject(dc, face_);
    HGDIOBJ oldFont = GetCurrentObject(dc, OBJ_FONT);
    Composer face{dc, Colours()};
    SetBkMode(dc, TRANSPARENT);
    face.Fill({0, 0, kStatusWidth, kStatusHeight}, Plain ? face.colours.PlainFace : face.colours.Face);
    for (const RECT& panel : {kLabelPanel, kClockPanel, kMemoryPanel}) face.Panel(panel);
    SetTextColor(dc, face.colours.Digits);

    SYSTEMTIME now;
    GetLocalTime(&now);
    const wchar_t* label = Label(now.wHour * 60 + now.wMinute);
    face.Text(labelFont_, kLabelPanel, kLabelPanel.left + 4, label);
    std::wstring summary = label;
    if (Percent >= 0) {
        int x = face.Digits(smallDigits_, kLabelPanel, kLabelPanel.right - 46, uint64_t(Percent), 3, false);
        face.Text(labelFont_, kLabelPanel, x + 1, L"%");
    }

    ClockFigures clock = Clock(now);
    int x = face.Digits(bigDigits_, kClockPanel, kClockPanel.left + 8, uint64_t(clock.Hour), 2, false);
    x = face.Text(bigDigits_, kClockPanel, x, L":");
    x = face.Digits(bigDigits_, kClockPanel, x, uint64_t(clock.Minute), 2, true);
    RECT low = {kClockPanel.left, kClockPanel.top + 10, kClockPanel.right, kClockPanel.bottom};
    x = face.Text(smallDigits_, low, x + 2, L":");
    x = face.Digits(smallDigits_, low, x, uint64_t(clock.Second), 2, true);
    face.Text(labelFont_, low, x + 6, clock.Mark);

    uint64_t kbytes = FreeKbytes();
    x = face.Text(labelFont_, kMemoryPanel, kMemoryPanel.left + 4, L"Free");
    x = face.Digits(smallDigits_, kMemoryPanel, kMemoryPanel.right - 98, kbytes, 9, false);
    face.Text(labelFont_, kMemoryPanel, x + 2, L"K");

    BitBlt(target, 0, 0, kStatusWidth, kStatusHeight, dc, 0, 0, SRCCOPY);
    SelectObject(dc, oldFont);
    SelectObject(dc, oldBitmap);
    DeleteDC(dc);

    // The window's text says what the face shows, for screen readers and for
    // anything else that reads windows rather than pixels.
    wchar_t figures[96];
    wsprintfW(figures, L" %d:%02d:%02d%s%s, %luK free", clock.Hour, clock.Minute, clock.Second,
              clock.Mark[0] ? L" " : L"", clock.Mark, static_cast<unsigned long>(kbytes));
    summary += figures;
    if (Percent >= 0) summary += L", " + std::to_wstring(Percent) + L"%";
    wchar_t shown[128] = L"";
    GetWindowTextW(Window, shown, 128);
    if (summary != shown) SetWindowTextW(Window, summary.c_str());
}
