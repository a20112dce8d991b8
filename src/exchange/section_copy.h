#pragma once
// The section chooser on plain surfaces: the enlarged view of the imported bitmap,
// the selection frame on its grid, and copying the selection over the frame image.
#include "view/frame_drawing.h"
#include "view/picture_surface.h"

#include <QImage>

// Snaps a view position to its bitmap pixel's corner: p - (p rem viewZoom), the
// remainder taking p's sign, so negative positions move towards 0.
int SnapToGrid(int position, int viewZoom);

struct SectionSelection {
    bool selecting = false;
    int anchorX = 0, anchorY = 0, cornerX = 0, cornerY = 0;
};

// Clears the view and draws the picture at (0, 0) enlarged viewZoom times, as far as
// it fits.
void RedrawSectionView(PictureSurface& view, const QImage& picture, int viewZoom);

// The white frame, viewZoom pixels thick, growing outwards from the rectangle
// through the anchor and the corner.
void DrawSelectionFrame(PictureSurface& view, const SectionSelection& selection, int viewZoom);

// Clears the target and copies one view pixel per bitmap pixel inside the frame,
// the pixel one right of and below each block's corner, to the target's top left.
void CopySection(const PictureSurface& view, const SectionSelection& selection, int viewZoom, FrameSurfaces target);
