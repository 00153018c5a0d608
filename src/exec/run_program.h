// Finding and starting what a word names when it is no built-in command.
#pragma once

class BatchProgram;

// Runs the program named by CommandArgs. Until program search exists, every
// word that reaches here is unknown: message 5, and ErrorLevel 1 since no
// program ran to give an exit code.
void RunProgram(BatchProgram* batch);
