// The page that makes a disc image of a folder by the disc-image tool; what DMG and ISO have in
// common, which is nearly all. Main thread; the tool is a process of its own.
#pragma once

#include "DiskImageTool.h"
#include "Page.h"

#include <memory>

namespace Ui {
class Image;
}

class ImageViewController : public Page
{
    Q_OBJECT

public:
    ~ImageViewController() override;

    [[nodiscard]] bool hasRunningJob() const override { return m_isGenerating; }

protected:
    // What sets one kind of image apart.
    struct Kind
    {
        QString fileType;        // extension of the output file, without a dot
        QStringList fileSystems; // the tool's arguments that ask for them
    };

    explicit ImageViewController(Kind kind);

private:
    void srcSelectAction();
    void outputSelectAction();
    void clearAction();
    void generateAction();
    [[nodiscard]] bool verify() const;
    void generated(std::optional<int> exitStatus);
    void setAllStatus(bool enabled);

    std::unique_ptr<Ui::Image> m_ui;
    Kind m_kind;
    DiskImageTool m_tool;
    bool m_isGenerating = false;
};
