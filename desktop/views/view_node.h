// What every view of ours is made of: place in the tree, geometry, layer, contents and drawing.
// ViewImplementation<Base> puts it under any view class of the platform's interface:
//     class IconImageView : public ViewImplementation<platform::SBIconImageView> { … };
// Such a class adds className() and what its Base asks beyond platform::View. Views live in shared
// pointers; a view that does not is never found by viewWithTag.
#pragma once

#include "desktop/imaging/graphics_context.h"
#include "desktop/views/layer.h"
#include "platform/uikit.h"

#include <cstddef>
#include <memory>
#include <vector>

namespace velmoranth::desktop {

class ViewNode : public std::enable_shared_from_this<ViewNode> {
  public:
    // How opacity is applied: to each operation on its own, as rendering a layer does, or to a view
    // with all its subviews at once, as the screen does.
    enum class OpacityRule { eachOperation, wholeTree };

    ViewNode(const ViewNode&) = delete;
    ViewNode& operator=(const ViewNode&) = delete;
    virtual ~ViewNode();

    // The node of a view; null for nil and for views of another make.
    [[nodiscard]] static ViewNode* of(const platform::ViewRef& view);

    [[nodiscard]] int nodeTag() const { return tag_; }

    void setNodeTag(int tag) { tag_ = tag; }

    [[nodiscard]] const platform::Rect& nodeFrame() const { return frame_; }

    // Negative sizes are made positive by moving the origin; not finite ones are ignored.
    void setNodeFrame(const platform::Rect& frame);

    [[nodiscard]] const std::vector<platform::ViewRef>& nodeSubviews() const { return subviews_; }

    // The view that this one is in; nil when there is none.
    [[nodiscard]] platform::ViewRef superview() const;
    // `index` counts from the back; past the end is in front. The view leaves its superview first.
    // Nil, this view itself, a view that holds this one, and views of another make do nothing.
    void insertSubviewAtIndex(const platform::ViewRef& view, std::size_t index);
    void removeNodeFromSuperview();
    [[nodiscard]] platform::ViewRef nodeWithTag(int tag);

    // The image stretched over the bounds; nil for none.
    [[nodiscard]] const platform::ImageRef& contents() const { return contents_; }

    void setContents(const platform::ImageRef& image) { contents_ = image; }

    [[nodiscard]] double alpha() const { return layer_->appearance.opacity; }

    // Clamped to 0..1.
    void setAlpha(double alpha);

    [[nodiscard]] bool isHidden() const { return layer_->appearance.hidden; }

    void setHidden(bool hidden) { layer_->appearance.hidden = hidden; }

    [[nodiscard]] bool clipsToBounds() const { return layer_->appearance.masksToBounds; }

    [[nodiscard]] const platform::Color& backgroundColor() const {
        return layer_->appearance.backgroundColor;
    }

    [[nodiscard]] const std::shared_ptr<DesktopLayer>& desktopLayer() const { return layer_; }

    // Draws the view and its subviews in the view's own coordinates.
    void render(DesktopGraphicsContext& context, OpacityRule rule, double opacity = 1);

  protected:
    ViewNode();

    // The view that this node is part of.
    [[nodiscard]] virtual platform::View* asView() = 0;
    // What a view draws itself, between its contents and its subviews.
    virtual void drawContent(DesktopGraphicsContext& context, double opacity);

  private:
    [[nodiscard]] platform::ViewRef selfAsView();
    [[nodiscard]] bool isInside(const ViewNode& node) const;
    void renderContent(DesktopGraphicsContext& context, OpacityRule rule, double opacity);

    int tag_ = 0;
    platform::Rect frame_;
    ViewNode* superview_ = nullptr;  // which holds this one
    std::vector<platform::ViewRef> subviews_;
    platform::ImageRef contents_;
    std::shared_ptr<DesktopLayer> layer_;
};

template <class Base>
class ViewImplementation : public Base, public ViewNode {
  public:
    [[nodiscard]] int tag() const override { return nodeTag(); }

    void setTag(int tag) override { setNodeTag(tag); }

    [[nodiscard]] platform::Rect frame() const override { return nodeFrame(); }

    void setFrame(const platform::Rect& frame) override { setNodeFrame(frame); }

    [[nodiscard]] platform::Rect bounds() const override { return desktopLayer()->bounds(); }

    [[nodiscard]] std::vector<platform::ViewRef> subviews() const override {
        return nodeSubviews();
    }

    void addSubview(const platform::ViewRef& view) override {
        insertSubviewAtIndex(view, nodeSubviews().size());
    }

    void removeFromSuperview() override { removeNodeFromSuperview(); }

    [[nodiscard]] platform::ViewRef viewWithTag(int tag) override { return nodeWithTag(tag); }

    void setBackgroundColor(const platform::Color& color) override {
        desktopLayer()->appearance.backgroundColor = color;
    }

    void setClipsToBounds(bool clips) override { desktopLayer()->appearance.masksToBounds = clips; }

    [[nodiscard]] platform::LayerRef layer() override { return desktopLayer(); }

  protected:
    [[nodiscard]] platform::View* asView() override { return this; }
};

}  // namespace velmoranth::desktop
