#pragma once

// Solids of bolted joints, built with the kernel, with sizes the tests know.
#include <BRepAlgoAPI_Cut.hxx>
#include <BRepAlgoAPI_Fuse.hxx>
#include <BRepPrimAPI_MakeBox.hxx>
#include <BRepPrimAPI_MakeCylinder.hxx>
#include <gp_Ax2.hxx>

namespace joint_shapes {
inline TopoDS_Shape Plate(double x, double y, double z, double dx, double dy, double dz) {
    return BRepPrimAPI_MakeBox(gp_Pnt(x, y, z), dx, dy, dz).Shape();
}

inline TopoDS_Shape Rod(const gp_Pnt& from, const gp_Dir& dir, double diameter, double length) {
    return BRepPrimAPI_MakeCylinder(gp_Ax2(from, dir), diameter / 2, length).Shape();
}

// A hole drilled from `from` along `dir`; deeper than the plate makes it a through hole.
inline TopoDS_Shape Drill(const TopoDS_Shape& solid, const gp_Pnt& from, const gp_Dir& dir,
                          double diameter, double depth) {
    return BRepAlgoAPI_Cut(solid, Rod(from, dir, diameter, depth)).Shape();
}

// A slot cut into a plate lying in z: centre (x, y), from z0 over `depth`, along x or along y.
inline TopoDS_Shape CutSlot(const TopoDS_Shape& solid, double x, double y, double z0, double width,
                            double length, double depth, bool alongY = false) {
    const double half = (length - width) / 2;
    const gp_Vec along = alongY ? gp_Vec(0, half, 0) : gp_Vec(half, 0, 0);
    const gp_Pnt centre(x, y, z0);
    const gp_Pnt corner =
        alongY ? gp_Pnt(x - width / 2, y - half, z0) : gp_Pnt(x - half, y - width / 2, z0);
    TopoDS_Shape cutter =
        BRepPrimAPI_MakeBox(corner, alongY ? width : 2 * half, alongY ? 2 * half : width, depth)
            .Shape();
    cutter =
        BRepAlgoAPI_Fuse(cutter, Rod(centre.Translated(-along), gp::DZ(), width, depth)).Shape();
    cutter =
        BRepAlgoAPI_Fuse(cutter, Rod(centre.Translated(along), gp::DZ(), width, depth)).Shape();
    return BRepAlgoAPI_Cut(solid, cutter).Shape();
}

// A bolt with a round head whose top is at `top`, pointing along `dir`.
inline TopoDS_Shape Bolt(const gp_Pnt& top, const gp_Dir& dir, double shank, double length,
                         double head = 0, double headHeight = 0) {
    if (head == 0) head = 1.6 * shank;
    if (headHeight == 0) headHeight = 0.7 * shank;
    const gp_Pnt bearing = top.Translated(gp_Vec(dir) * headHeight);
    return BRepAlgoAPI_Fuse(Rod(top, dir, head, headHeight), Rod(bearing, dir, shank, length))
        .Shape();
}

// A round nut whose face is at `face`, its bore along `dir`.
inline TopoDS_Shape Nut(const gp_Pnt& face, const gp_Dir& dir, double bore, double thickness) {
    return BRepAlgoAPI_Cut(Rod(face, dir, 1.8 * bore, thickness),
                           Rod(face.Translated(gp_Vec(dir) * -1), dir, bore, thickness + 2))
        .Shape();
}
}  // namespace joint_shapes
