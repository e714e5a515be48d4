#include "framework/ui_message.h"

#include <cstdio>

#include "framework/text_convert.h"

namespace {
IZebMessageSink* g_sink = nullptr;
}

IZebMessageSink* SetZebMessageSink(IZebMessageSink* sink) {
    IZebMessageSink* previous = g_sink;
    g_sink = sink;
    return previous;
}

IZebMessageSink* GetZebMessageSink() { return g_sink; }

int ZebMessageBox(const std::wstring& text, const std::wstring& caption, ZebMsgIcon icon,
                  ZebMsgButtons buttons) {
    if (g_sink) return g_sink->ShowMessage(caption, text, icon, buttons);
    std::fprintf(stderr, "%s: %s\n", ToUtf8(caption).c_str(), ToUtf8(text).c_str());
    return ZebFirstButtonAnswer(buttons);
}
