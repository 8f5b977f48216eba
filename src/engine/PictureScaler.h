// Velmora - making new pictures from existing ones through the host's scratch
// picture boxes: scaled by factors, sized, centred or tiled on a container.
#pragma once

#include "engine/EngineHost.h"

#include <functional>
#include <optional>

namespace velmora {

// How the form picture is fitted to the form.
enum FormPictureEffects { FpNone = 0, FpFit = 1, FpCenter = 2, FpTile = 3 };

class PictureScaler {
public:
    explicit PictureScaler(EngineHost &host) : m_host(host) {}

    // Each returns the new picture, or nullptr ("nothing") when the source is
    // empty or any step fails; none of them throws.
    HostObjectPtr ScalePicture(const HostObjectPtr &pic, double xScale, double yScale);
    HostObjectPtr SizePicture(const HostObjectPtr &pic, int xSize, int ySize);
    HostObjectPtr CenterPicture(HostObject &container, const HostObjectPtr &pic);
    HostObjectPtr TilePicture(HostObject &container, const HostObjectPtr &pic);

    // Sets the form's Picture from the form picture box according to mode;
    // with gradientFill set, or no form picture, it does nothing.
    void ApplyFormPicture(HostObject &form, int mode, float width, float height, bool gradientFill);

private:
    struct Extent {
        double width, height;
    };
    // The source picture painted over a whole canvas of the given extent
    // (computed from the source's own size).
    HostObjectPtr stretch(const HostObjectPtr &pic, const std::function<Extent(float, float)> &extent);
    HostObject &box(PictureBoxId id) { return m_host.pictureBox(id); }
    bool clearBoxes();
    HostObjectPtr resultOfCanvas();
    // The container's size (w, h) and the picture's (pw, ph), in twips, with
    // the canvas sized to the container and filled with its background.
    struct Placement {
        float w = 0, h = 0, pw = 0, ph = 0;
    };
    std::optional<Placement> prepareContainerCanvas(HostObject &container, const HostObjectPtr &pic);

    EngineHost &m_host;
};

} // namespace velmora
