#pragma once

#include <atomic>
#include <gp_Dir.hxx>
#include <gp_Pnt.hxx>
#include <gp_Trsf.hxx>
#include <vector>

#include "engine/assembly.h"

// What the fastener and alignment rules see of a part: its holes and slots, and, for a part
// shaped like a fastener, its axis, shank and head. Lengths in kernel millimetres.

// A hole: coaxial inner cylinders (a counterbore or countersink belongs to its hole) running
// from `start` to `end` along its axis.
struct Hole {
    gp_Pnt start, end;
    double diameter = 0.0;  // the narrowest bore
    bool through = false;   // open at both ends
    gp_Dir Axis() const { return gp_Dir(gp_Vec(start, end)); }
    double Depth() const { return start.Distance(end); }
};

// A slot: two parallel inner planes closed by two half-cylinders.
struct Slot {
    gp_Pnt centre;     // middle of the slot, half way down
    gp_Dir axis;       // along its depth
    gp_Dir direction;  // along its length
    double width = 0.0, length = 0.0, depth = 0.0;
};

// A part shaped like a fastener: its longest outer cylinder is the shank, the wider end the head.
struct FastenerShape {
    bool found = false;
    gp_Pnt top;      // outer end of the head
    gp_Pnt bearing;  // where the shank leaves the head
    gp_Pnt tip;      // end of the shank
    double shankDiameter = 0.0;
    double headDiameter = 0.0;                                // across its widest corners
    gp_Dir Axis() const { return gp_Dir(gp_Vec(top, tip)); }  // from the head to the tip
    double Length() const { return top.Distance(tip); }
};

struct PartFeatures {
    std::vector<Hole> holes;
    std::vector<Slot> slotFeatures;  // not "slots", which Qt takes for a keyword
    FastenerShape fastener;
};

// The features of one shape, in the shape's own coordinates.
PartFeatures RecognizeFeatures(const TopoDS_Shape& shape);
PartFeatures Transformed(const PartFeatures& features, const gp_Trsf& placement);

// The features of every part, in assembly coordinates. Each distinct shape is analysed once
// whatever number of instances place it, on `threads` threads (0: one per processor). False when
// cancelled.
bool RecognizeAssembly(const Assembly& assembly, unsigned threads, const std::atomic<bool>* cancel,
                       std::vector<PartFeatures>& features);
