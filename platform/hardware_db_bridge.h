#pragma once

class QWidget;

// ZEBHardwareDBBridge.so: the hardware (fastener) database editor. Shows the dialog modally over
// `parent` (may be null) and returns when it closes; every change is stored at once.
extern "C" __attribute__((visibility("default"))) void LaunchHardwareDBDialog(QWidget* parent);
