// SPDX-License-Identifier: MIT
#include "model/mux.h"

#include "model/quad.h"

namespace IPSERDESIP {

namespace {

QString nameAt(const MUX *mux, int sel, int dir)
{
    return mux->pointFn ? mux->pointFn(sel, dir) : QString();
}

// A position leads on only to a mux of this mux's own quad; the bridge between
// quads is reachable from both because it stands in both quads' maps.
MUX *muxNamed(const MUX *mux, const QString &name)
{
    if (!mux->quad || name.isEmpty())
        return nullptr;
    return mux->quad->mux(name);
}

// An open position names nothing, so it is never the source looked for, even
// when a caller asks for an empty name.
bool isSource(const QString &point, const QString &ref)
{
    return !point.isEmpty() && point == ref;
}

void select(MUX *mux, int sel, int dir)
{
    ++mux->count;
    mux->m_sel = sel;
    mux->m_dir = dir;
}

// The one search behind the four public forms. Without `path` it only
// answers; with `path` it selects and counts the muxes of the route it finds,
// innermost first, so that nothing is touched unless the whole route holds.
// With `via`, a descent is made only into the mux of that name, and there the
// search may go on with `via` or, failing that, without it.
bool search(MUX *mux, const QString &ref, const QString *via, QList<QString> *path)
{
    const auto next = [&](const QString &point) -> MUX * {
        MUX *inner = muxNamed(mux, point);
        if (inner && via && inner->name != *via)
            return nullptr;
        return inner;
    };
    const auto descend = [&](MUX *inner) {
        if (via && search(inner, ref, via, path))
            return true;
        return search(inner, ref, nullptr, path);
    };

    if (mux->count < 1) {
        for (int dir = 0; dir < mux->dirCount; ++dir) {
            for (int sel = 0; sel < mux->selCount; ++sel) {
                if (!isSource(nameAt(mux, sel, dir), ref))
                    continue;
                if (path) {
                    path->append(mux->name);
                    select(mux, sel, dir);
                }
                return true;
            }
        }
        for (int dir = 0; dir < mux->dirCount; ++dir) {
            for (int sel = 0; sel < mux->selCount; ++sel) {
                MUX *inner = next(nameAt(mux, sel, dir));
                if (!inner)
                    continue;
                if (path)
                    path->append(mux->name);
                if (descend(inner)) {
                    if (path)
                        select(mux, sel, dir);
                    return true;
                }
                // The inner search has restored everything it touched, so
                // the name appended here is the last entry.
                if (path)
                    path->removeLast();
            }
        }
        return false;
    }

    const QString point = mux->point();
    if (isSource(point, ref)) {
        if (path) {
            path->append(mux->name);
            ++mux->count;
        }
        return true;
    }
    MUX *inner = next(point);
    if (!inner)
        return false;
    if (path)
        path->append(mux->name);
    if (descend(inner)) {
        if (path)
            ++mux->count;
        return true;
    }
    if (path)
        path->removeLast();
    return false;
}

} // namespace

MUX::MUX(QUAD *quad, const QString &name, QStringList (*optionFn)(MUX *), int selCount,
         int dirCount, QString (*pointFn)(int, int))
    : Instance(name, quad)
    , m_sel(0)
    , m_dir(0)
    , selCount(selCount)
    , dirCount(dirCount)
    , pointFn(pointFn)
    , optionFn(optionFn)
{}

MUX::~MUX() = default;

int MUX::sel()
{
    return m_sel;
}

int MUX::dir()
{
    return m_dir;
}

QStringList MUX::tomlParameter()
{
    return optionFn ? optionFn(this) : QStringList();
}

QString MUX::point()
{
    return nameAt(this, m_sel, m_dir);
}

void MUX::reset(const QString &ref)
{
    if (count > 0) {
        const QString p = point();
        if (p == ref)
            --count;
        if (MUX *inner = muxNamed(this, p)) {
            inner->reset(ref);
            --count;
        }
        if (count > 0)
            return;
    }
    count = 0;
    m_sel = 0;
    m_dir = 0;
}

bool MUX::checkReachAccess(const QString &ref)
{
    return search(this, ref, nullptr, nullptr);
}

bool MUX::checkReachAccess(const QString &ref, const QString &via)
{
    return search(this, ref, &via, nullptr);
}

bool MUX::getReachAccess(const QString &ref, QList<QString> &path)
{
    return search(this, ref, nullptr, &path);
}

bool MUX::getReachAccess(const QString &ref, const QString &via, QList<QString> &path)
{
    return search(this, ref, &via, &path);
}

} // namespace IPSERDESIP
