// What every view of ours is made of: place in the tree, geometry, layer, contents and drawing.
// ViewImplementation<Base> puts it under any view class of the platform's interface:
//     class IconImageView : public ViewImplementation<platform::SBIconImageView> { … };
// Such a class adds className() and what its Base asks beyond platform::View. Views live in shared
// pointers; a view that does not is never found by viewWithTag.
#pragma once

#include "desktop/imaging/graphics_context.h"
#include "desktop/views/animation.h"
#include "desktop/views/layer.h"
#include "platform/uikit.h"

#include "record/operations.h"
#include "record/recorder.h"

#include <cstddef>
#include <memory>
#include <vector>

namespace velmoranth::desktop {

// Moves what a view shows, with its subviews, about the centre of its frame; the frame itself stays
// that without it.
struct ViewTransform {
    double scaleX = 1;
    double scaleY = 1;
    platform::Point translation = {};  // points of the superview

    friend bool operator==(const ViewTransform&, const ViewTransform&) = default;
};

[[nodiscard]] inline ViewTransform mixed(const ViewTransform& from, const ViewTransform& to,
                                         double share) {
    return {mixed(from.scaleX, to.scaleX, share),
            mixed(from.scaleY, to.scaleY, share),
            {mixed(from.translation.x, to.translation.x, share),
             mixed(from.translation.y, to.translation.y, share)}};
}

class ViewNode : public std::enable_shared_from_this<ViewNode> {
  public:
    // How opacity is applied: to each operation on its own, as rendering a layer does, or to a view
    // with all its subviews at once, as the screen does. The screen also shows animated properties
    // where they are now, rendering a layer where they go.
    enum class OpacityRule { eachOperation, wholeTree };

    ViewNode(const ViewNode&) = delete;
    ViewNode& operator=(const ViewNode&) = delete;
    virtual ~ViewNode();

    // The node of a view; null for nil and for views of another make.
    [[nodiscard]] static ViewNode* of(const platform::ViewRef& view);

    [[nodiscard]] int nodeTag() const { return tag_; }

    void setNodeTag(int tag) { tag_ = tag; }

    [[nodiscard]] const platform::Rect& nodeFrame() const { return frame_; }

    // The frame, alpha and transform are animated when they are set in a block (animation.h). The
    // shown ones are those that the screen shows now. A side that a movement takes below nothing is
    // shown as nothing, in the middle of where it would be.
    [[nodiscard]] platform::Rect shownFrame() const;

    // Negative sizes are made positive by moving the origin; not finite ones are ignored.
    void setNodeFrame(const platform::Rect& frame);

    [[nodiscard]] const std::vector<platform::ViewRef>& nodeSubviews() const { return subviews_; }

    // The view that this one is in; nil when there is none.
    [[nodiscard]] platform::ViewRef superview() const;
    // `index` counts from the back; past the end is in front. The view leaves its superview first.
    // Nil, this view itself, a view that holds this one, and views of another make do nothing.
    void insertNode(const platform::ViewRef& view, std::size_t index);
    void removeNodeFromSuperview();
    [[nodiscard]] platform::ViewRef nodeWithTag(int tag);

    // The image stretched over the bounds; nil for none.
    [[nodiscard]] const platform::ImageRef& contents() const { return contents_; }

    void setContents(const platform::ImageRef& image) { contents_ = image; }

    [[nodiscard]] double alpha() const { return layer_->appearance.opacity; }

    [[nodiscard]] double shownAlpha() const { return layer_->shownOpacity(); }

    // Clamped to 0..1.
    void setNodeAlpha(double alpha);

    [[nodiscard]] const ViewTransform& transform() const { return transform_; }

    [[nodiscard]] ViewTransform shownTransform() const {
        return transformTransition_.shown(transform_);
    }

    // Not finite ones are ignored. That of the view that is rendered itself plays no part.
    void setTransform(const ViewTransform& transform);

    [[nodiscard]] bool isHidden() const { return layer_->appearance.hidden; }

    [[nodiscard]] bool clipsToBounds() const { return layer_->appearance.masksToBounds; }

    [[nodiscard]] const platform::Color& backgroundColor() const {
        return layer_->appearance.backgroundColor;
    }

    [[nodiscard]] const std::vector<platform::GestureRecognizerRef>& recognizers() const {
        return recognizers_;
    }

    // Nil and a recognizer that is there already do nothing.
    void addRecognizer(const platform::GestureRecognizerRef& recognizer);

    [[nodiscard]] const std::shared_ptr<DesktopLayer>& desktopLayer() const { return layer_; }

    // Draws the view and its subviews in the view's own coordinates.
    void render(DesktopGraphicsContext& context, OpacityRule rule, double opacity = 1);

  protected:
    friend class DesktopLayer;

    ViewNode();

    // The view that this node is part of.
    [[nodiscard]] virtual platform::View* asView() = 0;
    // What a view draws itself, between its contents and its subviews. `bounds` are those that are
    // shown.
    virtual void drawContent(DesktopGraphicsContext& context, const platform::Rect& bounds,
                             double opacity);
    // What contents and drawContent may reach; the bounds, unless a view draws beyond them.
    [[nodiscard]] virtual platform::Rect contentExtent(const platform::Rect& bounds) const;

  private:
    struct Geometry {
        platform::Rect frame;
        ViewTransform transform;
    };

    [[nodiscard]] static platform::Rect placed(const platform::Rect& rect,
                                               const Geometry& geometry);
    [[nodiscard]] Geometry geometry(OpacityRule rule) const;
    [[nodiscard]] bool castsShadow(OpacityRule rule) const;
    // What the view and its subviews reach, in its own coordinates, without its own shadow.
    [[nodiscard]] platform::Rect extent(OpacityRule rule) const;
    [[nodiscard]] platform::Rect withShadow(const platform::Rect& extent, OpacityRule rule) const;
    [[nodiscard]] platform::ViewRef selfAsView();
    [[nodiscard]] bool isInside(const ViewNode& node) const;
    void renderContent(DesktopGraphicsContext& context, OpacityRule rule, double opacity);
    void renderSubview(DesktopGraphicsContext& context, OpacityRule rule, double opacity);

    int tag_ = 0;
    platform::Rect frame_;
    Transition<platform::Rect> frameTransition_;
    ViewTransform transform_;
    Transition<ViewTransform> transformTransition_;
    ViewNode* superview_ = nullptr;  // which holds this one
    std::vector<platform::ViewRef> subviews_;
    platform::ImageRef contents_;
    std::vector<platform::GestureRecognizerRef> recognizers_;
    std::shared_ptr<DesktopLayer> layer_;
};

template <class Base>
class ViewImplementation : public Base, public ViewNode {
  public:
    [[nodiscard]] int tag() const override { return nodeTag(); }

    void setTag(int tag) override {
        record::tell(*this, record::messageOf("View", "setTag"), tag);
        setNodeTag(tag);
    }

    [[nodiscard]] platform::Rect frame() const override { return nodeFrame(); }

    void setFrame(const platform::Rect& frame) override {
        record::tell(*this, record::messageOf("View", "setFrame"), frame);
        setNodeFrame(frame);
    }

    [[nodiscard]] platform::Rect bounds() const override { return desktopLayer()->bounds(); }

    [[nodiscard]] std::vector<platform::ViewRef> subviews() const override {
        return nodeSubviews();
    }

    void addSubview(const platform::ViewRef& view) override {
        record::tell(*this, record::messageOf("View", "addSubview"), view);
        insertNode(view, nodeSubviews().size());
    }

    void removeFromSuperview() override {
        record::tell(*this, record::messageOf("View", "removeFromSuperview"));
        removeNodeFromSuperview();
    }

    [[nodiscard]] platform::ViewRef viewWithTag(int tag) override { return nodeWithTag(tag); }

    void setBackgroundColor(const platform::Color& color) override {
        record::tell(*this, record::messageOf("View", "setBackgroundColor"), color);
        desktopLayer()->appearance.backgroundColor = color;
    }

    void insertSubviewAtIndex(const platform::ViewRef& view, std::size_t index) override {
        record::tell(*this, record::messageOf("View", "insertSubviewAtIndex"), view, index);
        insertNode(view, index);
    }

    void setClipsToBounds(bool clips) override {
        record::tell(*this, record::messageOf("View", "setClipsToBounds"), clips);
        desktopLayer()->appearance.masksToBounds = clips;
    }

    void setAlpha(double alpha) override {
        record::tell(*this, record::messageOf("View", "setAlpha"), alpha);
        setNodeAlpha(alpha);
    }

    void setHidden(bool hidden) override {
        record::tell(*this, record::messageOf("View", "setHidden"), hidden);
        desktopLayer()->appearance.hidden = hidden;
    }

    void addGestureRecognizer(const platform::GestureRecognizerRef& recognizer) override {
        record::tell(*this, record::messageOf("View", "addGestureRecognizer"), recognizer);
        addRecognizer(recognizer);
    }

    [[nodiscard]] platform::LayerRef layer() override { return desktopLayer(); }

  protected:
    [[nodiscard]] platform::View* asView() override { return this; }
};

}  // namespace velmoranth::desktop
