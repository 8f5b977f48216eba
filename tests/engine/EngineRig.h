// A form of fake controls with an engine that has been through its set-up.
#pragma once

#include "FakeHost.h"
#include "engine/ResizeEngine.h"

struct EngineRig {
    explicit EngineRig(float width = 10000, float height = 10000)
        : form(fake::form(width, height))
    {
        engine.DesignFormScaleWidth = width;
        engine.DesignFormScaleHeight = height;
        engine.events.resizeStarted = [this] { ++started; };
        engine.events.resizeDone = [this] { ++done; };
        engine.events.error = [this](const std::string &d, const velmora::HostError &) { errors.push_back(d); };
    }

    fake::ObjectPtr add(fake::ObjectPtr c)
    {
        form->children.push_back(c);
        return c;
    }

    // What the form event driver does on the first resize after load.
    void setUp()
    {
        engine.ResizeControls(*form);
        engine.ResizeControls(*form);
        engine.FormReady = true;
    }

    void resizeTo(float width, float height)
    {
        form->props["ScaleWidth"] = velmora::Value(width);
        form->props["ScaleHeight"] = velmora::Value(height);
        engine.ResizeControls(*form);
    }

    fake::EngineHost host;
    velmora::ResizeEngine engine{host};
    fake::ObjectPtr form;
    int started = 0, done = 0;
    std::vector<std::string> errors;
};
