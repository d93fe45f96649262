// The widgets of a form (.ui), made before the members that use them. Main thread.
#pragma once

#include <memory>

template <typename Form, typename Widget>
[[nodiscard]] std::unique_ptr<Form> madeForm(Widget *widget)
{
    auto form = std::make_unique<Form>();
    form->setupUi(widget);
    return form;
}
