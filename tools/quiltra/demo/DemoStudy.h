#ifndef QUILTRA_TOOLS_QUILTRA_DEMO_DEMOSTUDY_H_
#define QUILTRA_TOOLS_QUILTRA_DEMO_DEMOSTUDY_H_

#include <memory>
#include <ostream>

#include <quiltra/dataset/Dict.h>
#include <quiltra/dataset/Tree.h>

namespace QuiltraTools {

/// The demo's sample: an enhanced MR image of 3 x 2 frames of 4 x 4 pixels, its texts in
/// Latin-1, with a structured multi-frame grid holding each frame's position and slice
/// thickness. Built by attribute names through dict; prints what it builds.
std::shared_ptr<Quiltra::Tree> buildStudy(const std::shared_ptr<const Quiltra::Dict>& dict,
                                          std::ostream& out);

/// A layer over study that renames the patient, removes the patient id and adds a
/// description; study itself stays as it was. Prints both views.
std::shared_ptr<Quiltra::Tree> layerChange(const std::shared_ptr<Quiltra::Tree>& study,
                                           std::ostream& out);

/// Normalises the grid of a flat data set: per-frame values equal at every position move
/// to the shared level. Prints the grid before and after.
void normaliseGrid(const std::shared_ptr<Quiltra::Tree>& flat, std::ostream& out);

}  // namespace QuiltraTools

#endif  // QUILTRA_TOOLS_QUILTRA_DEMO_DEMOSTUDY_H_
