// The prompt: a template of "$" codes, printed by ShowPrompt. The template
// comes from the setting Prompt and may be replaced for the rest of the run
// by the prompt command, which never writes the setting.
#pragma once

#include "app/toolkit/omdib.h"

class PromptState {
public:
    // Reads the setting.
    PromptState();

    wchar_t Template[kLineMax] = {};

    void LoadSetting();
    void SetTemplate(const wchar_t* text);
    // On a line of its own: line end first when the cursor is not at column 0.
    void Print();
};

extern PromptState ThePrompt;
