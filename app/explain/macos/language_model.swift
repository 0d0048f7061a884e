// The Swift side of app/explain/macos/language_model.cpp: two C functions around the system's on-device language model.
// The framework is linked weakly and first touched on a system that has it.
import Dispatch
import Foundation
import FoundationModels

@available(macOS 26.0, *)
@Generable
struct Guess {
  @Guide(
    description:
      "What the process itself does, from the command and the file contents. A verb phrase in the present tense, at most 15 words, in plain English"
  )
  var does: String

  @Guide(description: "True only when the command or the file contents clearly show what it does")
  var sure: Bool
}

@available(macOS 26.0, *)
private func guess(instructions: String, prompt: String) async -> Guess? {
  let session = LanguageModelSession(
    model: SystemLanguageModel.default, tools: [], instructions: instructions)
  // Greedy: the same evidence gives the same answer.
  let options = GenerationOptions(sampling: .greedy)
  let response = try? await session.respond(
    to: prompt, generating: Guess.self, includeSchemaInPrompt: true, options: options)
  return response?.content
}

// Carries the answer from the task to the thread that waits for it; the semaphore orders the two.
private final class Answer: @unchecked Sendable {
  var does: String?
  var sure = false
}

@_cdecl("tarnwick_language_model_available")
public func languageModelAvailable() -> Bool {
  guard #available(macOS 26.0, *) else { return false }
  if case .available = SystemLanguageModel.default.availability { return true }
  return false
}

// On success `does` is a text that the caller frees.
@_cdecl("tarnwick_language_model_answer")
public func languageModelAnswer(
  instructions: UnsafePointer<CChar>, prompt: UnsafePointer<CChar>,
  does: UnsafeMutablePointer<UnsafeMutablePointer<CChar>?>, sure: UnsafeMutablePointer<Bool>
) -> Bool {
  guard #available(macOS 26.0, *) else { return false }
  let answer = Answer()
  let done = DispatchSemaphore(value: 0)
  let (instructionsText, promptText) = (String(cString: instructions), String(cString: prompt))
  Task.detached {
    if let guess = await guess(instructions: instructionsText, prompt: promptText) {
      answer.does = guess.does
      answer.sure = guess.sure
    }
    done.signal()
  }
  done.wait()
  guard let text = answer.does else { return false }
  does.pointee = strdup(text)
  sure.pointee = answer.sure
  return does.pointee != nil
}
