#include "engine/features.h"

#include <BRepAdaptor_Surface.hxx>
#include <BRepClass3d_SolidClassifier.hxx>
#include <BRep_Tool.hxx>
#include <Standard_Failure.hxx>
#include <TopExp.hxx>
#include <TopExp_Explorer.hxx>
#include <TopTools_IndexedMapOfShape.hxx>
#include <TopoDS.hxx>
#include <algorithm>
#include <cmath>
#include <map>
#include <numbers>
#include <optional>

#include "engine/pair_search.h"

namespace {
constexpr double kLength = 1e-4;    // lengths closer than this are equal
constexpr double kParallel = 1e-6;  // 1 - |cos| below this: parallel
constexpr double kFullTurn = 2 * std::numbers::pi - 0.05;
constexpr double kHalfTurn = std::numbers::pi;

// An axis written one way whatever way a face runs: the direction's largest component positive,
// the point the one nearest the origin.
struct Line {
    gp_Pnt foot;
    gp_Dir dir;
    double At(const gp_Pnt& p) const { return gp_Vec(foot, p).Dot(gp_Vec(dir)); }
    gp_Pnt Point(double t) const { return foot.Translated(gp_Vec(dir) * t); }
    double Radial(const gp_Pnt& p) const { return Point(At(p)).Distance(p); }
    bool Same(const Line& other) const {
        return 1 - std::fabs(dir.Dot(other.dir)) < kParallel && foot.Distance(other.foot) < kLength;
    }
};

Line Canonical(const gp_Ax1& axis) {
    gp_Dir d = axis.Direction();
    const double x = d.X(), y = d.Y(), z = d.Z();
    const double big = std::fabs(x) >= std::fabs(y) && std::fabs(x) >= std::fabs(z) ? x
                       : std::fabs(y) >= std::fabs(z)                               ? y
                                                                                    : z;
    if (big < 0) d.Reverse();
    const gp_Vec toOrigin(axis.Location(), gp::Origin());
    return {axis.Location().Translated(gp_Vec(d) * toOrigin.Dot(gp_Vec(d))), d};
}

// One face turning about an axis: a cylinder (radius > 0) or a cone (radius 0).
struct Turned {
    Line line;
    double radius = 0.0;
    double t0 = 0.0, t1 = 0.0;  // extent along the line
    double span = 0.0;          // angle covered
    bool inner = false;         // its material lies outside, away from the axis
};

// Extent of a face's vertices along a line.
std::pair<double, double> Extent(const TopoDS_Shape& face, const Line& line) {
    double lo = 1e300, hi = -1e300;
    for (TopExp_Explorer v(face, TopAbs_VERTEX); v.More(); v.Next()) {
        const double t = line.At(BRep_Tool::Pnt(TopoDS::Vertex(v.Current())));
        lo = std::min(lo, t);
        hi = std::max(hi, t);
    }
    return {lo, hi};
}

// The face's outward normal at the middle of its parameters, and that point.
std::pair<gp_Pnt, gp_Vec> MidNormal(const BRepAdaptor_Surface& surface, const TopoDS_Face& face) {
    const double u = (surface.FirstUParameter() + surface.LastUParameter()) / 2;
    const double v = (surface.FirstVParameter() + surface.LastVParameter()) / 2;
    gp_Pnt p;
    gp_Vec du, dv;
    surface.D1(u, v, p, du, dv);
    gp_Vec n = du.Crossed(dv);
    if (face.Orientation() == TopAbs_REVERSED) n.Reverse();
    return {p, n};
}

struct Plane {
    gp_Pnt point;
    gp_Dir normal;  // out of the material
};

struct Faces {
    std::vector<Turned> turned;
    std::vector<Plane> planes;
};

// The angle a face turns about a line, from points along the parameter that goes round it.
double SampledSpan(const BRepAdaptor_Surface& surface, const Line& line) {
    constexpr int kSteps = 32;
    const gp_Dir x =
        std::fabs(line.dir.X()) < 0.9 ? line.dir.Crossed(gp::DX()) : line.dir.Crossed(gp::DY());
    const gp_Dir y = line.dir.Crossed(x);
    const auto turn = [&](bool alongU) {
        const double u0 = surface.FirstUParameter(), u1 = surface.LastUParameter();
        const double v0 = surface.FirstVParameter(), v1 = surface.LastVParameter();
        double total = 0.0, last = 0.0;
        for (int i = 0; i <= kSteps; ++i) {
            const double f = double(i) / kSteps;
            const gp_Pnt p = alongU ? surface.Value(u0 + (u1 - u0) * f, (v0 + v1) / 2)
                                    : surface.Value((u0 + u1) / 2, v0 + (v1 - v0) * f);
            const gp_Vec r(line.Point(line.At(p)), p);
            const double angle = std::atan2(r.Dot(gp_Vec(y)), r.Dot(gp_Vec(x)));
            if (i > 0) total += std::remainder(angle - last, 2 * std::numbers::pi);
            last = angle;
        }
        return std::fabs(total);
    };
    return std::max(turn(true), turn(false));
}

// The cylinder a free-form face lies on, when every sampled normal crosses one axis at right
// angles and every sampled point lies at one distance from it.
std::optional<gp_Cylinder> FitCylinder(const BRepAdaptor_Surface& surface) {
    constexpr int kSteps = 4;
    std::vector<gp_Pnt> points;
    std::vector<gp_Vec> normals;
    const double u0 = surface.FirstUParameter(), u1 = surface.LastUParameter();
    const double v0 = surface.FirstVParameter(), v1 = surface.LastVParameter();
    for (int i = 0; i <= kSteps; ++i)
        for (int j = 0; j <= kSteps; ++j) {
            const double u = u0 + (u1 - u0) * (0.05 + 0.9 * i / kSteps),
                         v = v0 + (v1 - v0) * (0.05 + 0.9 * j / kSteps);
            gp_Pnt p;
            gp_Vec du, dv;
            surface.D1(u, v, p, du, dv);
            const gp_Vec n = du.Crossed(dv);
            if (n.Magnitude() < 1e-12) return std::nullopt;
            points.push_back(p);
            normals.push_back(n.Normalized());
        }
    size_t a = 0, b = 0;
    double widest = 0.0;
    for (size_t i = 0; i < normals.size(); ++i)
        for (size_t j = i + 1; j < normals.size(); ++j)
            if (const double c = normals[i].Crossed(normals[j]).Magnitude(); c > widest)
                widest = c, a = i, b = j;
    if (widest < 1e-3) return std::nullopt;  // flat
    const gp_Dir axis(normals[a].Crossed(normals[b]));
    for (const gp_Vec& n : normals)
        if (std::fabs(n.Dot(axis)) > 1e-6) return std::nullopt;
    // Where the two normal lines cross, seen along the axis.
    const gp_Vec na = normals[a], nb = normals[b], d(points[a], points[b]);
    const double cross = na.Dot(nb), sa = (d.Dot(na) - d.Dot(nb) * cross) / (1 - cross * cross);
    const gp_Pnt centre = points[a].Translated(na * sa);
    const Line line{centre, axis};
    const double radius = line.Radial(points[a]);
    for (const gp_Pnt& p : points)
        if (std::fabs(line.Radial(p) - radius) > kLength) return std::nullopt;
    return gp_Cylinder(gp_Ax3(centre, axis), radius);
}

Faces Analyse(const TopoDS_Shape& shape) {
    Faces faces;
    for (TopExp_Explorer e(shape, TopAbs_FACE); e.More(); e.Next()) {
        const TopoDS_Face face = TopoDS::Face(e.Current());
        const BRepAdaptor_Surface surface(face, true);
        // Free-form faces that are planes, cylinders or cones within the length tolerance count
        // as such; files often write turned faces as rational splines.
        GeomAbs_SurfaceType type = surface.GetType();
        std::optional<gp_Cylinder> cylinder;
        if (type == GeomAbs_Cylinder) cylinder = surface.Cylinder();
        // Files often write turned faces as rational splines: such a face is a cylinder when its
        // points and normals fit one.
        if (type == GeomAbs_BSplineSurface || type == GeomAbs_BezierSurface ||
            type == GeomAbs_SurfaceOfRevolution) {
            cylinder = FitCylinder(surface);
            if (cylinder) type = GeomAbs_Cylinder;
        }
        if (type != GeomAbs_Cylinder && type != GeomAbs_Cone && type != GeomAbs_Plane) continue;
        const auto [p, n] = MidNormal(surface, face);
        if (n.Magnitude() < 1e-12) continue;
        if (type == GeomAbs_Plane) {
            faces.planes.push_back({p, gp_Dir(n)});
            continue;
        }
        Turned t;
        t.line = Canonical(cylinder ? cylinder->Axis() : surface.Cone().Axis());
        t.radius = cylinder ? cylinder->Radius() : 0.0;
        std::tie(t.t0, t.t1) = Extent(face, t.line);
        t.span = surface.GetType() == type ? surface.LastUParameter() - surface.FirstUParameter()
                                           : SampledSpan(surface, t.line);
        const gp_Vec radial(t.line.Point(t.line.At(p)), p);
        t.inner = radial.Dot(n) < 0;
        if (t.t1 > t.t0) faces.turned.push_back(t);
    }
    return faces;
}

// Faces of one cylinder (same line and radius, overlapping extents) taken together; `span` is the
// largest angle they cover at any one place along the line.
struct Cylinder {
    Line line;
    double radius = 0.0, t0 = 0.0, t1 = 0.0, span = 0.0;
    bool inner = false;
};

std::vector<Cylinder> Cylinders(const std::vector<Turned>& turned) {
    std::vector<bool> used(turned.size(), false);
    std::vector<Cylinder> cylinders;
    for (size_t i = 0; i < turned.size(); ++i) {
        if (used[i] || turned[i].radius <= 0) continue;
        std::vector<const Turned*> group{&turned[i]};
        used[i] = true;
        Cylinder c{turned[i].line, turned[i].radius, turned[i].t0, turned[i].t1, 0.0,
                   turned[i].inner};
        for (bool grew = true; grew;) {
            grew = false;
            for (size_t j = i + 1; j < turned.size(); ++j) {
                const Turned& f = turned[j];
                if (used[j] || f.inner != c.inner || std::fabs(f.radius - c.radius) > kLength ||
                    !f.line.Same(c.line))
                    continue;
                if (f.t0 > c.t1 + kLength || f.t1 < c.t0 - kLength) continue;
                used[j] = grew = true;
                group.push_back(&f);
                c.t0 = std::min(c.t0, f.t0);
                c.t1 = std::max(c.t1, f.t1);
            }
        }
        for (const Turned* probe : group) {
            const double mid = (probe->t0 + probe->t1) / 2;
            double span = 0.0;
            for (const Turned* f : group)
                if (f->t0 <= mid && mid <= f->t1) span += f->span;
            c.span = std::max(c.span, span);
        }
        cylinders.push_back(c);
    }
    return cylinders;
}

bool Inside(const TopoDS_Shape& shape, const gp_Pnt& p) {
    BRepClass3d_SolidClassifier classifier(shape, p, kLength / 10);
    return classifier.State() == TopAbs_IN;
}

// Coaxial inner bores that meet, with the cones between or beside them, make one hole.
std::vector<Hole> Holes(const TopoDS_Shape& shape, const std::vector<Cylinder>& cylinders,
                        const std::vector<Turned>& turned) {
    struct Run {
        Line line;
        double t0, t1, diameter;
    };
    std::vector<Run> runs;
    for (const Cylinder& c : cylinders)
        if (c.inner && c.span >= kFullTurn) runs.push_back({c.line, c.t0, c.t1, 2 * c.radius});
    std::vector<Hole> holes;
    std::vector<bool> used(runs.size(), false);
    for (size_t i = 0; i < runs.size(); ++i) {
        if (used[i]) continue;
        used[i] = true;
        Run hole = runs[i];
        for (bool grew = true; grew;) {
            grew = false;
            for (size_t j = 0; j < runs.size(); ++j) {
                if (used[j] || !runs[j].line.Same(hole.line)) continue;
                if (runs[j].t0 > hole.t1 + kLength || runs[j].t1 < hole.t0 - kLength) continue;
                used[j] = grew = true;
                hole.t0 = std::min(hole.t0, runs[j].t0);
                hole.t1 = std::max(hole.t1, runs[j].t1);
                hole.diameter = std::min(hole.diameter, runs[j].diameter);
            }
            for (const Turned& cone : turned) {
                if (cone.radius > 0 || !cone.inner || !cone.line.Same(hole.line)) continue;
                if (cone.t0 > hole.t1 + kLength || cone.t1 < hole.t0 - kLength) continue;
                if (cone.t0 < hole.t0 - kLength || cone.t1 > hole.t1 + kLength) grew = true;
                hole.t0 = std::min(hole.t0, cone.t0);
                hole.t1 = std::max(hole.t1, cone.t1);
            }
        }
        Hole h;
        h.start = hole.line.Point(hole.t0);
        h.end = hole.line.Point(hole.t1);
        h.diameter = hole.diameter;
        // Open where the axis just beyond an end leaves the material.
        const double step = std::max(10 * kLength, 0.01 * hole.diameter);
        h.through = !Inside(shape, hole.line.Point(hole.t0 - step)) &&
                    !Inside(shape, hole.line.Point(hole.t1 + step));
        holes.push_back(h);
    }
    return holes;
}

// Two inner half-cylinders of one radius side by side, joined by two inner planes.
std::vector<Slot> Slots(const std::vector<Cylinder>& cylinders, const std::vector<Plane>& planes) {
    std::vector<const Cylinder*> ends;
    for (const Cylinder& c : cylinders)
        if (c.inner && std::fabs(c.span - kHalfTurn) < 0.05) ends.push_back(&c);
    std::vector<Slot> slots;
    std::vector<bool> used(ends.size(), false);
    for (size_t i = 0; i < ends.size(); ++i)
        for (size_t j = i + 1; j < ends.size() && !used[i]; ++j) {
            const Cylinder& a = *ends[i];
            const Cylinder& b = *ends[j];
            if (used[j] || std::fabs(a.radius - b.radius) > kLength) continue;
            if (1 - std::fabs(a.line.dir.Dot(b.line.dir)) > kParallel) continue;
            // Canonical lines of one direction measure along it from comparable feet.
            const double t0 = std::max(a.t0, b.t0), t1 = std::min(a.t1, b.t1);
            if (t1 <= t0 + kLength) continue;
            const double mid = (t0 + t1) / 2;
            const gp_Pnt pa = a.line.Point(mid), pb = b.line.Point(b.line.At(pa));
            const double apart = pa.Distance(pb);
            if (apart < kLength) continue;
            const gp_Dir along(gp_Vec(pa, pb));
            const gp_Dir across = a.line.dir.Crossed(along);
            const gp_Pnt centre((pa.XYZ() + pb.XYZ()) / 2);
            int sides = 0;
            for (const Plane& p : planes) {
                if (1 - std::fabs(p.normal.Dot(across)) > kParallel) continue;
                const gp_Vec toCentre(p.point, centre);
                const double offset = toCentre.Dot(gp_Vec(p.normal));
                if (std::fabs(offset - a.radius) < kLength)
                    sides |= p.normal.Dot(across) > 0 ? 1 : 2;
            }
            if (sides != 3) continue;
            used[i] = used[j] = true;
            slots.push_back(
                {centre, a.line.dir, along, 2 * a.radius, apart + 2 * a.radius, t1 - t0});
        }
    return slots;
}

FastenerShape Fastener(const TopoDS_Shape& shape, const std::vector<Cylinder>& cylinders) {
    FastenerShape f;
    const Cylinder* shank = nullptr;
    for (const Cylinder& c : cylinders)
        if (!c.inner && c.span >= kFullTurn &&
            (!shank || c.t1 - c.t0 > shank->t1 - shank->t0 + kLength))
            shank = &c;
    if (!shank) return f;
    TopTools_IndexedMapOfShape vertices;
    TopExp::MapShapes(shape, TopAbs_VERTEX, vertices);
    double lo = shank->t0, hi = shank->t1, wideLo = shank->radius, wideHi = shank->radius;
    for (int i = 1; i <= vertices.Extent(); ++i) {
        const gp_Pnt p = BRep_Tool::Pnt(TopoDS::Vertex(vertices(i)));
        const double t = shank->line.At(p), r = shank->line.Radial(p);
        lo = std::min(lo, t);
        hi = std::max(hi, t);
        if (t < shank->t0 - kLength) wideLo = std::max(wideLo, r);
        if (t > shank->t1 + kLength) wideHi = std::max(wideHi, r);
    }
    // The head is the wider end; with two equal ends, the longer one.
    const bool headLow = wideLo > wideHi + kLength || (std::fabs(wideLo - wideHi) <= kLength &&
                                                       shank->t0 - lo >= hi - shank->t1);
    f.found = true;
    f.shankDiameter = 2 * shank->radius;
    f.headDiameter = 2 * (headLow ? wideLo : wideHi);
    f.top = shank->line.Point(headLow ? lo : hi);
    f.bearing = shank->line.Point(headLow ? shank->t0 : shank->t1);
    f.tip = shank->line.Point(headLow ? hi : lo);
    return f;
}
}  // namespace

PartFeatures RecognizeFeatures(const TopoDS_Shape& shape) {
    const Faces faces = Analyse(shape);
    const std::vector<Cylinder> cylinders = Cylinders(faces.turned);
    PartFeatures features;
    features.holes = Holes(shape, cylinders, faces.turned);
    features.slotFeatures = Slots(cylinders, faces.planes);
    features.fastener = Fastener(shape, cylinders);
    return features;
}

PartFeatures Transformed(const PartFeatures& features, const gp_Trsf& placement) {
    PartFeatures placed = features;
    for (Hole& h : placed.holes) {
        h.start.Transform(placement);
        h.end.Transform(placement);
    }
    for (Slot& s : placed.slotFeatures) {
        s.centre.Transform(placement);
        s.axis.Transform(placement);
        s.direction.Transform(placement);
    }
    FastenerShape& f = placed.fastener;
    f.top.Transform(placement);
    f.bearing.Transform(placement);
    f.tip.Transform(placement);
    return placed;
}

bool RecognizeAssembly(const Assembly& assembly, unsigned threads, const std::atomic<bool>* cancel,
                       std::vector<PartFeatures>& features) {
    // One analysis per distinct shape; instances differ only by their placement.
    std::map<const TopoDS_TShape*, size_t> index;
    std::vector<TopoDS_Shape> shapes;
    std::vector<size_t> shapeOf;
    for (const AssemblyPart& part : assembly.parts) {
        const auto [it, added] = index.emplace(part.shape.TShape().get(), shapes.size());
        if (added) shapes.push_back(part.shape.Located(TopLoc_Location()));
        shapeOf.push_back(it->second);
    }
    std::vector<PartFeatures> own(shapes.size());
    const bool complete = RunParallel(
        shapes.size(), threads,
        [&](size_t i) {
            try {
                own[i] = RecognizeFeatures(shapes[i]);
            } catch (const Standard_Failure&) {
                own[i] = {};  // a shape the kernel cannot analyse has no features
            }
        },
        nullptr, cancel);
    if (!complete) return false;
    features.clear();
    for (size_t i = 0; i < assembly.parts.size(); ++i)
        features.push_back(
            Transformed(own[shapeOf[i]], assembly.parts[i].shape.Location().Transformation()));
    return true;
}
